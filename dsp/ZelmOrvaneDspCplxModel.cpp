#include "dsp/ZelmOrvaneDspCplxModel.h"

#include "dsp/ZelmDspIntegerSheet.h"
#include "framework/ZelmModelBlockImpl.h"

#define ZELM_MODEL ZelmOrvaneDspCplxModel
#define ZELM_CELL_ROWS "dsp/ZelmOrvaneDspCplxCells.def"
#define ZELM_TABLE_ROWS "dsp/ZelmOrvaneDspCplxTables.def"

namespace {

using enum zelm::DspComponent;

enum Mode : int { multAlu, multAluNomreg, multAluNoadreg, multAluNomregNoadreg };
constexpr std::array<zelm::DspMode, 4> kModes{
    {{"MULT_ALU", 0}, {"MULT_ALU_NOMREG", 0}, {"MULT_ALU_NOADREG", 0}, {"MULT_ALU_NOMREG_NOADREG", 0}}};

} // namespace

struct ZelmOrvaneDspCplxModel::Sheet : ZelmDspIntegerSheet<ZelmOrvaneDspCplxModel> {
#include "framework/ZelmAccessors.inc"

    static constexpr Key familyKey = "CPLX";
    static constexpr auto modes = kModes;
#include "dsp/ZelmDspCells.inc"

    /// The complex stages have powers of their own.
    static constexpr auto components = zelm::dspComponents(cascDelay);
    // kept: the complex stages count half among the rates, and whole in the sum of currents that divides them
    static constexpr auto aggregate = zelm::dspAggregate({{complexStg0, 0.5f}, {complexStg1, 0.5f}, {cascDelay, 1.0f}});

    static constexpr double fpAddControls = 1.13333;

    void pullOutputs() const
    {
        MultUsed();
        PreaddUsed();
        DynamicVccintPower();
        DynamicVccintMacbCPower();
        DynamicVccintStage0Power();
        DynamicVccintStage1Power();
        OperationalMode();
        VoltageScaling();
    }

    std::string_view computeMultUsed() const
    {
        return "YES";
    }

    std::string_view computePreaddUsed() const
    {
        return "YES";
    }

    zelm::Composed computeDspUsage() const
    {
        const Text mreg = MregUsed();
        const Text adreg = AdregUsed();
        return zelm::Composed{"MULT_YES_MREG_", mreg, "_PREADD_YES_ADREG_", adreg};
    }

    // ---- Toggle formulas ----

    float inputsAb() const
    {
        const float a = ATr();
        const float b = BTr();
        return MIN(0.5f, AVERAGE(a, b));
    }

    float preaddPath() const
    {
        const double adder = PreaddTr();
        const double stage0 = ComplexStg0Tr();
        const float d = DFromACplxTr();
        return MIN(0.5f, AVERAGE(static_cast<float>(adder * 0.63 + stage0 * 0.37), d));
    }

    float aluControls() const
    {
        return MIN(0.5f, controls(1.1333, 2.833));
    }

    float aluInputs() const
    {
        const Key& usage = OpmodeUsage();
        const float c = CDataTr();
        const float m = MDataTr();
        const float out = OutputTr();
        const float carry = AluCtrlCarryinTr();
        const float inputs = AVERAGE(c, m, out);
        return usage == "DYNAMIC" ? MIN(0.5f, (inputs * 58.0f + carry * 10.0f) / 58.0f) : MIN(0.5f, inputs);
    }

    float preadder() const
    {
        const float a = ATr();
        const float d = DFromACplxTr();
        const float conjugate = ConjInputTr();
        return MIN(0.5f, (zelm::meeting(a, d) * 27.0f + conjugate) / 27.0f);
    }

    float multiplier() const
    {
        const float adder = PreaddTr();
        const float b = BTr();
        const float conjugate = ConjInputTr();
        return MIN(0.5f, (zelm::meeting(adder, b) * 51.0f + conjugate) / 51.0f);
    }

    float products() const
    {
        const float product = MultTr();
        const float stage1 = ComplexStg1Tr();
        return MIN(0.5f, zelm::meeting(product, stage1));
    }

    float firstStage() const
    {
        const float right = B2B1CplxRTr();
        const float left = B2B1CplxLTr();
        const float conjugate = ConjInputTr();
        return MIN(0.5f, (zelm::meeting(right, left) * 18.0f + conjugate) / 18.0f);
    }

    float secondStage() const
    {
        const float stage0 = ComplexStg0Tr();
        const float leftAb = ACplxLBTr();
        return zelm::meeting(stage0, leftAb);
    }

    float cascade() const
    {
        const float out = POutputTr();
        const float a = ATr();
        const float b = BTr();
        return MIN(0.5f, (out * 58.0f + a * 18.0f + 18.0f * b) / 94.0f);
    }

    float ownRate(Component component, std::size_t group) const
    {
        using S = Sheet;
        // clang-format off
        static constexpr auto toggles = zelm::dspToggles<S>({
            {abData,      &S::inputsAb},
            {preaddData,  &S::preaddPath},
            {cData,       &S::CTr},
            {alureg,      &S::aluControls},
            {alumux,      &S::aluInputs},
            {aluadd,      &S::POutputTr},
            {preadd,      &S::preadder},
            {mult,        &S::multiplier},
            {mData,       &S::products},
            {patdet,      &S::POutputTr},
            {fpExp,       &S::AbDataTr},
            {fpAdd,       &S::fpAdder},
            {fpNorm,      &S::AluaddTr},
            {output,      &S::POutputTr},
            {optinv,      &S::aluControls},
            {complexStg0, &S::firstStage},
            {complexStg1, &S::secondStage},
            {cascDelay,   &S::cascade},
        });
        // clang-format on
        return (this->*toggles(component)[group])();
    }

    // ---- Power ----

    float computeDynamicVccintMacbCPower() const
    {
        const float vccint = Vccint();
        const float current = componentsCurrent();
        const float rest = TotalComponentAdjCurrent();
        return vccint * (current + rest);
    }

    float computeDynamicVccintStage0Power() const
    {
        const float current = ComplexStg0Current();
        const float vccint = Vccint();
        return current * vccint;
    }

    float computeDynamicVccintStage1Power() const
    {
        const float current = ComplexStg1Current();
        const float vccint = Vccint();
        return current * vccint;
    }

    // kept: one complex unit whatever NUM_DSP says, two slices and one pair of stages
    float computeDynamicVccintPower() const
    {
        const float macbC = DynamicVccintMacbCPower();
        const float stage0 = DynamicVccintStage0Power();
        const float stage1 = DynamicVccintStage1Power();
        return 2.0f * macbC + stage0 + stage1;
    }
};

#include "framework/ZelmModelBodies.inc"

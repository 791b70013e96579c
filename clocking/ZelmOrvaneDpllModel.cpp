#include "clocking/ZelmOrvaneDpllModel.h"

#include "clocking/ZelmClockGeneratorSheet.h"
#include "framework/ZelmModelBlockImpl.h"

#define ZELM_MODEL ZelmOrvaneDpllModel
#define ZELM_CELL_ROWS "clocking/ZelmOrvaneDpllCells.def"
#define ZELM_TABLE_ROWS "clocking/ZelmOrvaneDpllTables.def"

namespace {

using Params = ZelmOrvaneDpllParams;

struct Output {
    Params::IntEnum divide;
    Params::FloatEnum outputClock;
    Params::FloatEnum counterCurrent;
    Params::FloatEnum driverCurrent;
};
// clang-format off
constexpr Output kOutputs[] = {
    {Params::CLKOUT0_DIVIDE, Params::CLOCKOUT0, Params::VCC_AUX_CLKOUT0_CURRENT, Params::VCCINT_CLKOUT0_CURRENT},
    {Params::CLKOUT1_DIVIDE, Params::CLOCKOUT1, Params::VCC_AUX_CLKOUT1_CURRENT, Params::VCCINT_CLKOUT1_CURRENT},
    {Params::CLKOUT2_DIVIDE, Params::CLOCKOUT2, Params::VCC_AUX_CLKOUT2_CURRENT, Params::VCCINT_CLKOUT2_CURRENT},
    {Params::CLKOUT3_DIVIDE, Params::CLOCKOUT3, Params::VCC_AUX_CLKOUT3_CURRENT, Params::VCCINT_CLKOUT3_CURRENT},
};
// clang-format on

} // namespace

struct ZelmOrvaneDpllModel::Sheet : ZelmClockGeneratorSheet<ZelmOrvaneDpllModel> {
#include "framework/ZelmAccessors.inc"

    void pullOutputs() const
    {
        VccintPwr();
        VccramPwr();
        VccauxPwr();
    }

    // ---- VCCAUX ----

    float computeVccAuxBaseCurrent() const
    {
        return sumOfRows({"IVCC_AUX_DVDD_REGULATOR", "IVCC_AUX_CTRL_LOGIC_SDM"});
    }

    float computeVccAuxVcoCurrent() const
    {
        const float perMegahertz =
            sumOfRows({"IVCC_AUX_DIGITAL_SYNC", "IVCC_AUX_VCO_RING", "IVCC_AUX_TDC", "IVCC_AUX_SYNTH_LOGIC_CLKV"});
        return perMegahertz * Fvco();
    }

    // Unlike the other generators, its input counters see one edge of the input only.
    float computeVccAuxPfdClockCurrent() const
    {
        const float pfdClock = PfdClock();
        const float logic = row("IVCC_AUX_SYNTH_LOGIC_CLKREF");
        const float input = InputFrequency();
        const float counters = row("IVCC_AUX_INPUT_COUNTERS");
        return pfdClock * logic + input * counters;
    }

    float counterCurrent(const Output& output) const
    {
        const float divide = static_cast<float>(value(output.divide));
        const float clock = value(output.outputClock);
        const float perMegahertz = sumOfRows({"IVCC_AUX_INTERPOLATOR", "IVCC_AUX_OUTPUT_COUNTERS"});
        return divide == 1.0f ? 0.0f : divide * clock * perMegahertz;
    }

    float computeVccAuxIntCurrent() const
    {
        const float base = VccAuxBaseCurrent();
        const float vco = VccAuxVcoCurrent();
        const float input = VccAuxPfdClockCurrent();
        float sum = base + vco + input;
        for (const Output& output : kOutputs)
            sum += value(output.counterCurrent);
        return sum * row("FUDGE_FACTOR_AUX");
    }

    // At the characterisation voltage: the workbook leaves the input VCCAUX aside.
    float computeVccauxPwr() const
    {
        const float current = VccAuxIntCurrent();
        return current * row("FUDGE_FACTOR") * findCommonData("SIM_VOLTAGE", "VCCAUX");
    }

    // ---- VCCINT and VCCRAM ----

    float computeVccintBaseCurrent() const
    {
        return row("IVCCINT_MISC");
    }

    // The oscillator and the phase detector draw from VCCAUX alone.
    float computeVccintVcoCurrent() const
    {
        return 0.0f;
    }

    float computeVccintPfdClockCurrent() const
    {
        return 0.0f;
    }

    float driverCurrent(const Output& output) const
    {
        return value(output.outputClock) * row("IVCCINT_OUTPUT_DRIVER");
    }

    float computeVccintIntCurrent() const
    {
        const float base = VccintBaseCurrent();
        const float vco = VccintVcoCurrent();
        const float input = VccintPfdClockCurrent();
        float sum = base + vco + input;
        for (const Output& output : kOutputs)
            sum += value(output.driverCurrent);
        return sum * row("FUDGE_FACTOR_INT");
    }

    // VCCRAM has no current of its own: both rails take the power from the current of VCCINT.
    double digitalPower(const Key& rail, float volts) const
    {
        const float current = VccintIntCurrent();
        const float simVolts = findCommonData("SIM_VOLTAGE", rail);
        const double calibrated = current * row("FUDGE_FACTOR") * row("VCCINT_SIM");
        return calibrated / 0.825 * simVolts * zelm::voltageFactor(volts, simVolts);
    }

    double computeVccintPwr() const
    {
        return digitalPower("VCCINT", Vccint());
    }

    double computeVccramPwr() const
    {
        return digitalPower("VCCRAM", Vccram());
    }
};

#include "framework/ZelmModelBodies.inc"

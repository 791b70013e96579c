#include "dsp/ZelmOrvaneDspCplxModel.h"

#include "dsp/ZelmDspIntegerToggles.h"

template class ZelmModelBlock<ZelmOrvaneDspCplxModel, ZelmOrvaneDspCplxParams, ZelmOrvaneDspCplxData>;

#define ZELM_MODEL ZelmOrvaneDspCplxModel
#define ZELM_CELL_ROWS "dsp/ZelmOrvaneDspCplxCells.def"

namespace {

using Model = ZelmOrvaneDspCplxModel;
using Params = Model::Params;
using Data = Model::Data;

struct Traits {
    static constexpr double fpAddControls = 1.13333;
};

using T = ZelmDspIntegerToggles<Model, Traits>;

float inputsAb(const Model& model, Params& params, const Data& data)
{
    const float a = model.getATr(params, data);
    const float b = model.getBTr(params, data);
    return T::MIN(0.5f, T::AVERAGE(a, b));
}

float preaddPath(const Model& model, Params& params, const Data& data)
{
    const double adder = model.calculatePreaddTr(params, data);
    const double stage0 = model.calculateComplexStg0Tr(params, data);
    const float d = model.getDFromACplxTr(params, data);
    return T::MIN(0.5f, T::AVERAGE(static_cast<float>(adder * 0.63 + stage0 * 0.37), d));
}

float aluControls(const Model& model, Params& params, const Data& data)
{
    return T::MIN(0.5f, T::controls(model, params, data, 1.1333, 2.833));
}

float aluInputs(const Model& model, Params& params, const Data& data)
{
    const std::string_view usage = model.viewOpmodeUsage(params, data);
    const float c = model.calculateCDataTr(params, data);
    const float m = model.calculateMDataTr(params, data);
    const float out = model.calculateOutputTr(params, data);
    const float carry = model.getAluCtrlCarryinTr(params, data);
    const float inputs = T::AVERAGE(c, m, out);
    return usage == "DYNAMIC" ? T::MIN(0.5f, (inputs * 58.0f + carry * 10.0f) / 58.0f) : T::MIN(0.5f, inputs);
}

float preadder(const Model& model, Params& params, const Data& data)
{
    const float a = model.getATr(params, data);
    const float d = model.getDFromACplxTr(params, data);
    const float conjugate = model.getConjInputTr(params, data);
    return T::MIN(0.5f, (T::meeting(a, d) * 27.0f + conjugate) / 27.0f);
}

float multiplier(const Model& model, Params& params, const Data& data)
{
    const float adder = model.calculatePreaddTr(params, data);
    const float b = model.getBTr(params, data);
    const float conjugate = model.getConjInputTr(params, data);
    return T::MIN(0.5f, (T::meeting(adder, b) * 51.0f + conjugate) / 51.0f);
}

float products(const Model& model, Params& params, const Data& data)
{
    const float product = model.calculateMultTr(params, data);
    const float stage1 = model.calculateComplexStg1Tr(params, data);
    return T::MIN(0.5f, T::meeting(product, stage1));
}

float firstStage(const Model& model, Params& params, const Data& data)
{
    const float right = model.getB2B1CplxRTr(params, data);
    const float left = model.getB2B1CplxLTr(params, data);
    const float conjugate = model.getConjInputTr(params, data);
    return T::MIN(0.5f, (T::meeting(right, left) * 18.0f + conjugate) / 18.0f);
}

float secondStage(const Model& model, Params& params, const Data& data)
{
    const float stage0 = model.calculateComplexStg0Tr(params, data);
    const float leftAb = model.getACplxLBTr(params, data);
    return T::meeting(stage0, leftAb);
}

float cascade(const Model& model, Params& params, const Data& data)
{
    const float out = model.getPOutputTr(params, data);
    const float a = model.getATr(params, data);
    const float b = model.getBTr(params, data);
    return T::MIN(0.5f, (out * 58.0f + a * 18.0f + 18.0f * b) / 94.0f);
}

} // namespace

struct ZelmOrvaneDspCplxModel::Slice {
    static constexpr std::string_view family = "CPLX";
    static constexpr std::array<zelm::DspMode, 4> modes{
        {{"MULT_ALU", 0}, {"MULT_ALU_NOMREG", 0}, {"MULT_ALU_NOADREG", 0}, {"MULT_ALU_NOMREG_NOADREG", 0}}};
    /// The complex stages have powers of their own.
    static constexpr auto components = zelm::dspComponents(cascDelay);
    // kept: the complex stages count half among the rates, and whole in the sum of currents that divides them
    static constexpr auto aggregate = zelm::dspAggregate({{complexStg0, 0.5f}, {complexStg1, 0.5f}, {cascDelay, 1.0f}});
    // clang-format off
    static constexpr auto toggles = zelm::dspToggles<Model, 1>({
        {abData,      inputsAb},
        {preaddData,  preaddPath},
        {cData,       T::inputC},
        {alureg,      aluControls},
        {alumux,      aluInputs},
        {aluadd,      T::outputP},
        {preadd,      preadder},
        {mult,        multiplier},
        {mData,       products},
        {patdet,      T::outputP},
        {fpExp,       T::abDataRate},
        {fpAdd,       T::fpAdd},
        {fpNorm,      T::aluaddRate},
        {output,      T::outputP},
        {optinv,      aluControls},
        {complexStg0, firstStage},
        {complexStg1, secondStage},
        {cascDelay,   cascade},
    });
    // clang-format on
#include "dsp/ZelmDspCells.inc"
};

#include "framework/ZelmCellBodies.inc"

void ZelmOrvaneDspCplxModel::pullOutputs(Params& params, const Data& data) const
{
    viewMultUsed(params, data);
    viewPreaddUsed(params, data);
    calculateDynamicVccintPower(params, data);
    calculateDynamicVccintMacbCPower(params, data);
    calculateDynamicVccintStage0Power(params, data);
    calculateDynamicVccintStage1Power(params, data);
    viewOperationalMode(params, data);
    calculateVoltageScaling(params, data);
}

std::string_view ZelmOrvaneDspCplxModel::viewMultUsed(Params& params, const Data&) const
{
    return once(params[Params::MULT_USED], [] { return "YES"; });
}

std::string_view ZelmOrvaneDspCplxModel::viewPreaddUsed(Params& params, const Data&) const
{
    return once(params[Params::PREADD_USED], [] { return "YES"; });
}

std::string_view ZelmOrvaneDspCplxModel::viewDspUsage(Params& params, const Data& data) const
{
    return once(params[Params::DSP_USAGE], [&] {
        const std::string_view mreg = viewMregUsed(params, data);
        const std::string_view adreg = viewAdregUsed(params, data);
        return zelm::dspKey({"MULT_YES_MREG_", mreg, "_PREADD_YES_ADREG_", adreg});
    });
}

float ZelmOrvaneDspCplxModel::calculateDynamicVccintMacbCPower(Params& params, const Data& data) const
{
    return once(params[Params::DYNAMIC_VCCINT_MACBC_POWER], [&] {
        const float vccint = getVccint(params, data);
        const float current = componentsCurrent(params, data);
        const float rest = calculateTotalComponentAdjCurrent(params, data);
        return vccint * (current + rest);
    });
}

float ZelmOrvaneDspCplxModel::calculateDynamicVccintStage0Power(Params& params, const Data& data) const
{
    return once(params[Params::DYNAMIC_VCCINT_STAGE0_POWER], [&] {
        const float current = calculateComplexStg0Current(params, data);
        const float vccint = getVccint(params, data);
        return current * vccint;
    });
}

float ZelmOrvaneDspCplxModel::calculateDynamicVccintStage1Power(Params& params, const Data& data) const
{
    return once(params[Params::DYNAMIC_VCCINT_STAGE1_POWER], [&] {
        const float current = calculateComplexStg1Current(params, data);
        const float vccint = getVccint(params, data);
        return current * vccint;
    });
}

// kept: one complex unit whatever NUM_DSP says, two slices and one pair of stages
float ZelmOrvaneDspCplxModel::calculateDynamicVccintPower(Params& params, const Data& data) const
{
    return once(params[Params::DYNAMIC_VCCINT_POWER], [&] {
        const float macbC = calculateDynamicVccintMacbCPower(params, data);
        const float stage0 = calculateDynamicVccintStage0Power(params, data);
        const float stage1 = calculateDynamicVccintStage1Power(params, data);
        return 2.0f * macbC + stage0 + stage1;
    });
}

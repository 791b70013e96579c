#include "dsp/ZelmOrvaneDspLegacyModel.h"

#include "dsp/ZelmDspIntegerToggles.h"

template class ZelmModelBlock<ZelmOrvaneDspLegacyModel, ZelmOrvaneDspLegacyParams, ZelmOrvaneDspLegacyData>;

#define ZELM_MODEL ZelmOrvaneDspLegacyModel
#define ZELM_CELL_ROWS "dsp/ZelmOrvaneDspLegacyCells.def"

namespace {

using Model = ZelmOrvaneDspLegacyModel;
using Params = Model::Params;
using Data = Model::Data;

struct Traits {
    static constexpr float inmodeBits = 5.0f;
    static constexpr float preaddDataCap = 0.5f;
    static constexpr float aluBits = 48.0f;
    static constexpr float cascadeInBits = 45.0f;

    static float widened(float a)
    {
        return a * 30.0f / 27.0f;
    }
    static float multBehindPreaddControls(float inmode)
    {
        return ZelmHelperUtils::MIN(0.5f, static_cast<float>(inmode * 1.6));
    }
};

using T = ZelmDspIntegerToggles<Model, Traits>;

float carryCapped(const Model& model, Params& params, const Data& data)
{
    return T::MIN(0.5f, model.getAluCtrlCarryinTr(params, data));
}

float multOfInputs(const Model& model, Params& params, const Data& data)
{
    const std::string_view usage = model.viewOpmodeUsage(params, data);
    const float adder = model.calculatePreaddTr(params, data);
    const float a = model.getATr(params, data);
    const float b = model.getBTr(params, data);
    const float inmode = model.getInmodeNegateTr(params, data);
    const float ab = model.calculateAbDataTr(params, data);
    const float merged = T::AVERAGE(adder, a, b, T::MAX(adder, a, b));
    return usage == "DYNAMIC" ? T::MIN(0.5f, (merged * 51.0f + inmode) / 51.0f) : T::MIN(0.5f, ab);
}

float fpAdder(const Model& model, Params& params, const Data& data)
{
    const float ab = model.calculateAbDataTr(params, data);
    const float c = model.calculateCDataTr(params, data);
    const float out = model.calculateOutputTr(params, data);
    return T::AVERAGE(ab, c, out);
}

float cascade(const Model& model, Params& params, const Data& data)
{
    const std::string_view usage = model.viewOpmodeUsage(params, data);
    const float ab = model.calculateAbDataTr(params, data);
    const float preaddDataRate = model.calculatePreaddDataTr(params, data);
    const float out = model.getPOutputTr(params, data);
    return usage == "DYNAMIC" ? T::AVERAGE(ab, preaddDataRate) : T::cascadeOf(out, ab);
}

float xorInputs(const Model& model, Params& params, const Data& data)
{
    const float ab = model.calculateAbDataTr(params, data);
    const float c = model.calculateCDataTr(params, data);
    return T::AVERAGE(ab, c);
}

} // namespace

struct ZelmOrvaneDspLegacyModel::Slice : ZelmDspIntegerSlice {
    static constexpr std::string_view family = "LEGACY_INT24";
    static constexpr auto modes = kDspInt24Modes;
    // clang-format off
    static constexpr auto toggles = zelm::dspToggles<Model, 3>({
        // component  withMult             withPreadd           aluAlone
        {abData,      T::abData,           T::abData,           T::abDataAluAlone},
        {preaddData,  T::preaddData},
        {cData,       T::inputC},
        {alureg,      T::aluControls,      T::aluControls,      carryCapped},
        {alumux,      T::alumux},
        {aluadd,      T::outputP},
        {preadd,      T::abDataRate,       T::preadd,           T::abDataRate},
        {mult,        multOfInputs,        T::multBehindPreadd, T::abDataRateCapped},
        {mData,       T::multRate},
        {patdet,      T::outputP},
        {fpExp,       T::abDataRate},
        {fpAdd,       fpAdder},
        {fpNorm,      T::aluaddRate},
        {output,      T::outputP},
        {optinv,      T::aluControls},
        {complex,     T::complex},
        {cascDelay,   cascade},
        {wideXor,     xorInputs},
    });
    // clang-format on
#include "dsp/ZelmDspCells.inc"
};

#include "framework/ZelmCellBodies.inc"

float ZelmOrvaneDspLegacyModel::calculateWideXorCurrent(Params& params, const Data& data) const
{
    return once(params[Params::WIDE_XOR_CURRENT], [&] {
        const std::string_view used = viewWidexorUsed(params, data);
        const float toggle = calculateWideXorTr(params, data);
        const float perToggle = data.findDynamicData("WIDE_XOR_CURRENT", "", "", "", "");
        return used == "YES" ? toggle * perToggle : 0.0f; // kept: neither the clock nor the voltage enters
    });
}

float ZelmOrvaneDspLegacyModel::componentsCurrent(Params& params, const Data& data) const
{
    const float components = ZelmDspModel::componentsCurrent(params, data);
    const float wideXorCurrent = calculateWideXorCurrent(params, data);
    return components + wideXorCurrent;
}

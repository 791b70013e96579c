#include "dsp/ZelmOrvaneDspInt8Model.h"

#include "dsp/ZelmDspIntegerToggles.h"

template class ZelmModelBlock<ZelmOrvaneDspInt8Model, ZelmOrvaneDspInt8Params, ZelmOrvaneDspInt8Data>;

#define ZELM_MODEL ZelmOrvaneDspInt8Model
#define ZELM_CELL_ROWS "dsp/ZelmOrvaneDspInt8Cells.def"

namespace {

using Model = ZelmOrvaneDspInt8Model;
using Params = Model::Params;
using Data = Model::Data;

struct Traits {
    static constexpr float inmodeBits = 6.0f;
    static constexpr float preaddDataCap = 0.5f;
    static constexpr float aluBits = 58.0f;
    static constexpr float cascadeInBits = 54.0f;
    static constexpr double fpAddControls = 1.111;

    static float widened(float a)
    {
        return static_cast<float>(a * 1.2593);
    }
    static float multControls(float inmode)
    {
        return ZelmHelperUtils::MIN(0.5f, static_cast<float>(inmode * 2.666));
    }
    static float multBehindPreaddControls(float inmode)
    {
        return inmode; // kept: neither factor nor cap behind the pre-adder
    }
};

using T = ZelmDspIntegerToggles<Model, Traits>;

float aluControls(const Model& model, Params& params, const Data& data)
{
    return T::MIN(0.5f, T::controls(model, params, data, 1.111, 2.2221));
}

// kept: the inverters' cap is 50.0, and their factor 2.222 is not the ALU controls' 2.2221
float inverters(const Model& model, Params& params, const Data& data)
{
    return T::MIN(50.0f, T::controls(model, params, data, 1.111, 2.222));
}

} // namespace

struct ZelmOrvaneDspInt8Model::Slice : ZelmDspIntegerSlice {
    static constexpr std::string_view family = "INT8";
    static constexpr std::array<zelm::DspMode, 6> modes{{{"MULT_MREG", withMult},
                                                         {"PREADD_MULT", withPreadd},
                                                         {"MULT_NOMREG", withMult},
                                                         {"PREADD_MULT_NOMREG", withPreadd},
                                                         {"PREADD_MULT_NOADREG", withPreadd},
                                                         {"PREADD_MULT_NOMREG_NOADREG", withPreadd}}};
    // clang-format off
    static constexpr auto toggles = zelm::dspToggles<Model, 2>({
        // component  withMult             withPreadd
        {abData,      T::abData},
        {preaddData,  T::preaddData},
        {cData,       T::inputC},
        {alureg,      aluControls},
        {alumux,      T::alumux},
        {aluadd,      T::outputP},
        {preadd,      T::abDataRateCapped, T::preadd},
        {mult,        T::mult,             T::multBehindPreadd},
        {mData,       T::multRate},
        {patdet,      T::outputP},
        {fpExp,       T::abDataRate},
        {fpAdd,       T::fpAdd},
        {fpNorm,      T::aluaddRate},
        {output,      T::outputP},
        {optinv,      inverters},
        {complex,     T::complex},
        {cascDelay,   T::cascDelay},
    });
    // clang-format on
#include "dsp/ZelmDspCells.inc"
};

#include "framework/ZelmCellBodies.inc"

#include "dsp/ZelmOrvaneDspInt24Model.h"

#include "dsp/ZelmDspIntegerToggles.h"

template class ZelmModelBlock<ZelmOrvaneDspInt24Model, ZelmOrvaneDspInt24Params, ZelmOrvaneDspInt24Data>;

#define ZELM_MODEL ZelmOrvaneDspInt24Model
#define ZELM_CELL_ROWS "dsp/ZelmOrvaneDspInt24Cells.def"

namespace {

using Model = ZelmOrvaneDspInt24Model;

struct Traits {
    static constexpr float inmodeBits = 6.0f;
    static constexpr float preaddDataCap = 50.0f; // kept: not the 0.5 of the others
    static constexpr float aluBits = 58.0f;
    static constexpr float cascadeInBits = 51.0f;
    static constexpr double fpAddControls = 1.13333;

    static float widened(float a)
    {
        return static_cast<float>(a * 1.2593);
    }
    static float multControls(float inmode)
    {
        return ZelmHelperUtils::MIN(0.5f, 8.0f * inmode);
    }
    static float multBehindPreaddControls(float inmode)
    {
        return ZelmHelperUtils::MIN(0.5f, static_cast<float>(inmode * 1.33));
    }
};

using T = ZelmDspIntegerToggles<Model, Traits>;

} // namespace

struct ZelmOrvaneDspInt24Model::Slice : ZelmDspIntegerSlice {
    static constexpr std::string_view family = "INT24";
    static constexpr auto modes = kDspInt24Modes;
    // clang-format off
    static constexpr auto toggles = zelm::dspToggles<Model, 3>({
        // component  withMult             withPreadd           aluAlone
        {abData,      T::abData,           T::abData,           T::abDataAluAlone},
        {preaddData,  T::preaddData},
        {cData,       T::inputC},
        {alureg,      T::aluControls,      T::aluControls,      T::carry},
        {alumux,      T::alumux},
        {aluadd,      T::outputP},
        {preadd,      T::abDataRateCapped, T::preadd,           T::abDataRateCapped},
        {mult,        T::mult,             T::multBehindPreadd, T::abDataRate},
        {mData,       T::multRate},
        {patdet,      T::outputP},
        {fpExp,       T::abDataRate},
        {fpAdd,       T::fpAdd},
        {fpNorm,      T::aluaddRate},
        {output,      T::outputP},
        {optinv,      T::aluControls,      T::aluControls,      T::carry},
        {complex,     T::complex},
        {cascDelay,   T::cascDelay},
    });
    // clang-format on
#include "dsp/ZelmDspCells.inc"
};

#include "framework/ZelmCellBodies.inc"

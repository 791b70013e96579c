#pragma once

#include "framework/ZelmParamBlock.h"

struct ZELM_EXPORT ZelmOrvaneDspLegacyCells {
    static constexpr std::string_view name = "ZelmOrvaneDspLegacyParams";
#define ZELM_CELL_ROWS "dsp/ZelmOrvaneDspLegacyCells.def"
#include "framework/ZelmCellEnums.inc"
};

extern template class ZelmParamBlock<ZelmOrvaneDspLegacyCells>;

/// The cells of one group of like DSP slices of the older kind.
class ZELM_EXPORT ZelmOrvaneDspLegacyParams final : public ZelmParamBlock<ZelmOrvaneDspLegacyCells> {};

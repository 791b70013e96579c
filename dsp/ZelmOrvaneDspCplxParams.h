#pragma once

#include "framework/ZelmParamBlock.h"

struct ZELM_EXPORT ZelmOrvaneDspCplxCells {
    static constexpr std::string_view name = "ZelmOrvaneDspCplxParams";
#define ZELM_CELL_ROWS "dsp/ZelmOrvaneDspCplxCells.def"
#include "framework/ZelmCellEnums.inc"
};

extern template class ZelmParamBlock<ZelmOrvaneDspCplxCells>;

/// The cells of one complex multiplier: two DSP slices and two complex stages.
class ZELM_EXPORT ZelmOrvaneDspCplxParams final : public ZelmParamBlock<ZelmOrvaneDspCplxCells> {};

#pragma once

#include "framework/ZelmParamBlock.h"

struct ZELM_EXPORT ZelmOrvaneDspActivityCells {
    static constexpr std::string_view name = "ZelmOrvaneDspActivityParams";
#define ZELM_CELL_ROWS "dsp/ZelmOrvaneDspActivityCells.def"
#include "framework/ZelmCellEnums.inc"
};

extern template class ZelmParamBlock<ZelmOrvaneDspActivityCells>;

/// The cells of one DSP slice's usage.
class ZELM_EXPORT ZelmOrvaneDspActivityParams final : public ZelmParamBlock<ZelmOrvaneDspActivityCells> {};

#pragma once

#include "framework/ZelmParamBlock.h"

struct ZELM_EXPORT ZelmOrvaneDspConfigCells {
    static constexpr std::string_view name = "ZelmOrvaneDspConfigParams";
#define ZELM_CELL_ROWS "dsp/ZelmOrvaneDspConfigCells.def"
#include "framework/ZelmCellEnums.inc"
};

extern template class ZelmParamBlock<ZelmOrvaneDspConfigCells>;

/// The cells of one DSP slice's display-level mode.
class ZELM_EXPORT ZelmOrvaneDspConfigParams final : public ZelmParamBlock<ZelmOrvaneDspConfigCells> {};

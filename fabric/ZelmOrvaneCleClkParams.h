#pragma once

#include "framework/ZelmParamBlock.h"

struct ZELM_EXPORT ZelmOrvaneCleClkCells {
    static constexpr std::string_view name = "ZelmOrvaneCleClkParams";
#define ZELM_CELL_ROWS "fabric/ZelmOrvaneCleClkCells.def"
#include "framework/ZelmCellEnums.inc"
};

extern template class ZelmParamBlock<ZelmOrvaneCleClkCells>;

/// The cells of the slices that one clock reaches.
class ZELM_EXPORT ZelmOrvaneCleClkParams final : public ZelmParamBlock<ZelmOrvaneCleClkCells> {};

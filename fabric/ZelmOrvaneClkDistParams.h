#pragma once

#include "framework/ZelmParamBlock.h"

struct ZELM_EXPORT ZelmOrvaneClkDistCells {
    static constexpr std::string_view name = "ZelmOrvaneClkDistParams";
#define ZELM_CELL_ROWS "fabric/ZelmOrvaneClkDistCells.def"
#include "framework/ZelmCellEnums.inc"
};

extern template class ZelmParamBlock<ZelmOrvaneClkDistCells>;

/// The cells of one clock net's path through the clock network.
class ZELM_EXPORT ZelmOrvaneClkDistParams final : public ZelmParamBlock<ZelmOrvaneClkDistCells> {};

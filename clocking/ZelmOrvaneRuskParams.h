#pragma once

#include "framework/ZelmParamBlock.h"

struct ZELM_EXPORT ZelmOrvaneRuskCells {
    static constexpr std::string_view name = "ZelmOrvaneRuskParams";
#define ZELM_CELL_ROWS "clocking/ZelmOrvaneRuskCells.def"
#include "framework/ZelmCellEnums.inc"
};

extern template class ZelmParamBlock<ZelmOrvaneRuskCells>;

/// The cells of one PLL of the I/O banks.
class ZELM_EXPORT ZelmOrvaneRuskParams final : public ZelmParamBlock<ZelmOrvaneRuskCells> {};

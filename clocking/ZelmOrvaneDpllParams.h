#pragma once

#include "framework/ZelmParamBlock.h"

struct ZELM_EXPORT ZelmOrvaneDpllCells {
    static constexpr std::string_view name = "ZelmOrvaneDpllParams";
#define ZELM_CELL_ROWS "clocking/ZelmOrvaneDpllCells.def"
#include "framework/ZelmCellEnums.inc"
};

extern template class ZelmParamBlock<ZelmOrvaneDpllCells>;

/// The cells of one digital PLL.
class ZELM_EXPORT ZelmOrvaneDpllParams final : public ZelmParamBlock<ZelmOrvaneDpllCells> {};

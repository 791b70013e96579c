#pragma once

#include "framework/ZelmParamBlock.h"

struct ZELM_EXPORT ZelmOrvanePspllCells {
    static constexpr std::string_view name = "ZelmOrvanePspllParams";
#define ZELM_CELL_ROWS "clocking/ZelmOrvanePspllCells.def"
#include "framework/ZelmCellEnums.inc"
};

extern template class ZelmParamBlock<ZelmOrvanePspllCells>;

/// The cells of one PLL of the processing system.
class ZELM_EXPORT ZelmOrvanePspllParams final : public ZelmParamBlock<ZelmOrvanePspllCells> {};

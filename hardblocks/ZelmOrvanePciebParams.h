#pragma once

#include "framework/ZelmParamBlock.h"

struct ZELM_EXPORT ZelmOrvanePciebCells {
    static constexpr std::string_view name = "ZelmOrvanePciebParams";
#define ZELM_CELL_ROWS "hardblocks/ZelmOrvanePciebCells.def"
#include "framework/ZelmCellEnums.inc"
};

extern template class ZelmParamBlock<ZelmOrvanePciebCells>;

/// The cells of one PCIe block.
class ZELM_EXPORT ZelmOrvanePciebParams final : public ZelmParamBlock<ZelmOrvanePciebCells> {};

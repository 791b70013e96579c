#pragma once

#include "framework/ZelmParamBlock.h"

struct ZELM_EXPORT ZelmOrvaneMulmCells {
    static constexpr std::string_view name = "ZelmOrvaneMulmParams";
#define ZELM_CELL_ROWS "hardblocks/ZelmOrvaneMulmCells.def"
#include "framework/ZelmCellEnums.inc"
};

extern template class ZelmParamBlock<ZelmOrvaneMulmCells>;

/// The cells of one pipe block.
class ZELM_EXPORT ZelmOrvaneMulmParams final : public ZelmParamBlock<ZelmOrvaneMulmCells> {};

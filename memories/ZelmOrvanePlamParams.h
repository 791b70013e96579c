#pragma once

#include "framework/ZelmParamBlock.h"

struct ZELM_EXPORT ZelmOrvanePlamCells {
    static constexpr std::string_view name = "ZelmOrvanePlamParams";
#define ZELM_CELL_ROWS "memories/ZelmOrvanePlamCells.def"
#include "framework/ZelmCellEnums.inc"
};

extern template class ZelmParamBlock<ZelmOrvanePlamCells>;

/// The cells of a group of like large RAMs.
class ZELM_EXPORT ZelmOrvanePlamParams final : public ZelmParamBlock<ZelmOrvanePlamCells> {};

#pragma once

#include "framework/ZelmParamBlock.h"

struct ZELM_EXPORT ZelmOrvaneBramCells {
    static constexpr std::string_view name = "ZelmOrvaneBramParams";
#define ZELM_CELL_ROWS "memories/ZelmOrvaneBramCells.def"
#include "framework/ZelmCellEnums.inc"
};

extern template class ZelmParamBlock<ZelmOrvaneBramCells>;

/// The cells of one group of like block memories.
class ZELM_EXPORT ZelmOrvaneBramParams final : public ZelmParamBlock<ZelmOrvaneBramCells> {};

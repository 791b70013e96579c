#pragma once

#include "framework/ZelmParamBlock.h"

struct ZELM_EXPORT ZelmOrvaneCleLogicCells {
    static constexpr std::string_view name = "ZelmOrvaneCleLogicParams";
#define ZELM_CELL_ROWS "fabric/ZelmOrvaneCleLogicCells.def"
#include "framework/ZelmCellEnums.inc"
};

extern template class ZelmParamBlock<ZelmOrvaneCleLogicCells>;

/// The cells of one group of like logic elements.
class ZELM_EXPORT ZelmOrvaneCleLogicParams final : public ZelmParamBlock<ZelmOrvaneCleLogicCells> {};

#pragma once

#include "framework/ZelmParamBlock.h"

struct ZELM_EXPORT ZelmOrvaneIriClkCells {
    static constexpr std::string_view name = "ZelmOrvaneIriClkParams";
#define ZELM_CELL_ROWS "fabric/ZelmOrvaneIriClkCells.def"
#include "framework/ZelmCellEnums.inc"
};

extern template class ZelmParamBlock<ZelmOrvaneIriClkCells>;

/// The cells of the interface quads that one clock reaches.
class ZELM_EXPORT ZelmOrvaneIriClkParams final : public ZelmParamBlock<ZelmOrvaneIriClkCells> {};

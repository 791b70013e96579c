#pragma once

#include "framework/ZelmParamBlock.h"

struct ZELM_EXPORT ZelmOrvaneIriImuxCells {
    static constexpr std::string_view name = "ZelmOrvaneIriImuxParams";
#define ZELM_CELL_ROWS "fabric/ZelmOrvaneIriImuxCells.def"
#include "framework/ZelmCellEnums.inc"
};

extern template class ZelmParamBlock<ZelmOrvaneIriImuxCells>;

/// The cells of a group of like input multiplexers.
class ZELM_EXPORT ZelmOrvaneIriImuxParams final : public ZelmParamBlock<ZelmOrvaneIriImuxCells> {};

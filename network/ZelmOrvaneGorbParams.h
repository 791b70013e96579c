#pragma once

#include "framework/ZelmParamBlock.h"

struct ZELM_EXPORT ZelmOrvaneGorbCells {
    static constexpr std::string_view name = "ZelmOrvaneGorbParams";
#define ZELM_CELL_ROWS "network/ZelmOrvaneGorbCells.def"
#include "framework/ZelmCellEnums.inc"
};

extern template class ZelmParamBlock<ZelmOrvaneGorbCells>;

/// The cells of one hard on-chip memory.
class ZELM_EXPORT ZelmOrvaneGorbParams final : public ZelmParamBlock<ZelmOrvaneGorbCells> {};

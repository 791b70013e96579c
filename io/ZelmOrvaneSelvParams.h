#pragma once

#include "framework/ZelmParamBlock.h"

struct ZELM_EXPORT ZelmOrvaneSelvCells {
    static constexpr std::string_view name = "ZelmOrvaneSelvParams";
#define ZELM_CELL_ROWS "io/ZelmOrvaneSelvCells.def"
#include "framework/ZelmCellEnums.inc"
};

extern template class ZelmParamBlock<ZelmOrvaneSelvCells>;

/// The cells of one group of high-performance I/O pins that share their standards and direction.
class ZELM_EXPORT ZelmOrvaneSelvParams final : public ZelmParamBlock<ZelmOrvaneSelvCells> {};

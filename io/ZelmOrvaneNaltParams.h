#pragma once

#include "framework/ZelmParamBlock.h"

struct ZELM_EXPORT ZelmOrvaneNaltCells {
    static constexpr std::string_view name = "ZelmOrvaneNaltParams";
#define ZELM_CELL_ROWS "io/ZelmOrvaneNaltCells.def"
#include "framework/ZelmCellEnums.inc"
};

extern template class ZelmParamBlock<ZelmOrvaneNaltCells>;

/// The cells of one group of high-density I/O pins that share their standards and direction.
class ZELM_EXPORT ZelmOrvaneNaltParams final : public ZelmParamBlock<ZelmOrvaneNaltCells> {};

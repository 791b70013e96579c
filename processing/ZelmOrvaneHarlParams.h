#pragma once

#include "framework/ZelmParamBlock.h"

struct ZELM_EXPORT ZelmOrvaneHarlCells {
    static constexpr std::string_view name = "ZelmOrvaneHarlParams";
#define ZELM_CELL_ROWS "processing/ZelmOrvaneHarlCells.def"
#include "framework/ZelmCellEnums.inc"
};

extern template class ZelmParamBlock<ZelmOrvaneHarlCells>;

/// The cells of one platform management controller.
class ZELM_EXPORT ZelmOrvaneHarlParams final : public ZelmParamBlock<ZelmOrvaneHarlCells> {};

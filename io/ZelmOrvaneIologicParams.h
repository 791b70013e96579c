#pragma once

#include "framework/ZelmParamBlock.h"

struct ZELM_EXPORT ZelmOrvaneIologicCells {
    static constexpr std::string_view name = "ZelmOrvaneIologicParams";
#define ZELM_CELL_ROWS "io/ZelmOrvaneIologicCells.def"
#include "framework/ZelmCellEnums.inc"
};

extern template class ZelmParamBlock<ZelmOrvaneIologicCells>;

/// The cells of the I/O registers of one mode.
class ZELM_EXPORT ZelmOrvaneIologicParams final : public ZelmParamBlock<ZelmOrvaneIologicCells> {};

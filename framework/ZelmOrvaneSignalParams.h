#pragma once

#include "framework/ZelmParamBlock.h"

struct ZELM_EXPORT ZelmOrvaneSignalCells {
    static constexpr std::string_view name = "ZelmOrvaneSignalParams";
#define ZELM_CELL_ROWS "framework/ZelmOrvaneSignalCells.def"
#include "framework/ZelmCellEnums.inc"
};

extern template class ZelmParamBlock<ZelmOrvaneSignalCells>;

/// The cells of one group of like signals.
class ZELM_EXPORT ZelmOrvaneSignalParams final : public ZelmParamBlock<ZelmOrvaneSignalCells> {};

#pragma once

#include "framework/ZelmParamBlock.h"

struct ZELM_EXPORT ZelmOrvaneClockCells {
    static constexpr std::string_view name = "ZelmOrvaneClockParams";
#define ZELM_CELL_ROWS "fabric/ZelmOrvaneClockCells.def"
#include "framework/ZelmCellEnums.inc"
};

extern template class ZelmParamBlock<ZelmOrvaneClockCells>;

/// The cells of one clock net: its loads, the device's sites, and the part of the network that it occupies.
class ZELM_EXPORT ZelmOrvaneClockParams final : public ZelmParamBlock<ZelmOrvaneClockCells> {};

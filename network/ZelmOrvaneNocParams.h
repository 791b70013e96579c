#pragma once

#include "framework/ZelmParamBlock.h"

struct ZELM_EXPORT ZelmOrvaneNocCells {
    static constexpr std::string_view name = "ZelmOrvaneNocParams";
#define ZELM_CELL_ROWS "network/ZelmOrvaneNocCells.def"
#include "framework/ZelmCellEnums.inc"
};

extern template class ZelmParamBlock<ZelmOrvaneNocCells>;

/// The cells of one traffic path through the network on chip.
class ZELM_EXPORT ZelmOrvaneNocParams final : public ZelmParamBlock<ZelmOrvaneNocCells> {};

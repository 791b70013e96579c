#pragma once

#include "framework/ZelmParamBlock.h"

struct ZELM_EXPORT ZelmOrvaneHscCells {
    static constexpr std::string_view name = "ZelmOrvaneHscParams";
#define ZELM_CELL_ROWS "hardblocks/ZelmOrvaneHscCells.def"
#include "framework/ZelmCellEnums.inc"
};

extern template class ZelmParamBlock<ZelmOrvaneHscCells>;

/// The cells of one group of like two-speed blocks.
class ZELM_EXPORT ZelmOrvaneHscParams final : public ZelmParamBlock<ZelmOrvaneHscCells> {};

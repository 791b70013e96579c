#pragma once

#include "framework/ZelmParamBlock.h"

struct ZELM_EXPORT ZelmOrvaneJorlCells {
    static constexpr std::string_view name = "ZelmOrvaneJorlParams";
#define ZELM_CELL_ROWS "hardblocks/ZelmOrvaneJorlCells.def"
#include "framework/ZelmCellEnums.inc"
};

extern template class ZelmParamBlock<ZelmOrvaneJorlCells>;

/// The cells of one group of like dual-channel Ethernet MACs.
class ZELM_EXPORT ZelmOrvaneJorlParams final : public ZelmParamBlock<ZelmOrvaneJorlCells> {};

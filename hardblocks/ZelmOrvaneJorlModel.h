#pragma once

#include "framework/ZelmModelBlock.h"
#include "hardblocks/ZelmOrvaneJorlData.h"
#include "hardblocks/ZelmOrvaneJorlParams.h"

class ZELM_EXPORT ZelmOrvaneJorlModel;
extern template class ZelmModelBlock<ZelmOrvaneJorlModel, ZelmOrvaneJorlParams, ZelmOrvaneJorlData>;

/// Power of dual-channel Ethernet MACs, with or without error correction.
class ZELM_EXPORT ZelmOrvaneJorlModel final
    : public ZelmModelBlock<ZelmOrvaneJorlModel, ZelmOrvaneJorlParams, ZelmOrvaneJorlData> {
public:
    static constexpr std::string_view name = "ZelmOrvaneJorlModel";

#define ZELM_CELL_ROWS "hardblocks/ZelmOrvaneJorlCells.def"
#include "framework/ZelmCellFunctions.inc"
};

#pragma once

#include "framework/ZelmModelBlock.h"
#include "hardblocks/ZelmOrvaneIlknData.h"
#include "hardblocks/ZelmOrvaneIlknParams.h"

class ZELM_EXPORT ZelmOrvaneIlknModel;
extern template class ZelmModelBlock<ZelmOrvaneIlknModel, ZelmOrvaneIlknParams, ZelmOrvaneIlknData>;

/// Power of Interlaken cores, with or without error correction.
class ZELM_EXPORT ZelmOrvaneIlknModel final
    : public ZelmModelBlock<ZelmOrvaneIlknModel, ZelmOrvaneIlknParams, ZelmOrvaneIlknData> {
public:
    static constexpr std::string_view name = "ZelmOrvaneIlknModel";

#define ZELM_CELL_ROWS "hardblocks/ZelmOrvaneIlknCells.def"
#include "framework/ZelmCellFunctions.inc"
};

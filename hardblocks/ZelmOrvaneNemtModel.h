#pragma once

#include "framework/ZelmModelBlock.h"
#include "hardblocks/ZelmOrvaneNemtData.h"
#include "hardblocks/ZelmOrvaneNemtParams.h"

class ZELM_EXPORT ZelmOrvaneNemtModel;
extern template class ZelmModelBlock<ZelmOrvaneNemtModel, ZelmOrvaneNemtParams, ZelmOrvaneNemtData>;

/// Power of the compute array: busy and idle tiles, memory banks, streams, PLL and the shim row.
class ZELM_EXPORT ZelmOrvaneNemtModel final
    : public ZelmModelBlock<ZelmOrvaneNemtModel, ZelmOrvaneNemtParams, ZelmOrvaneNemtData> {
public:
    static constexpr std::string_view name = "ZelmOrvaneNemtModel";

#define ZELM_CELL_ROWS "hardblocks/ZelmOrvaneNemtCells.def"
#include "framework/ZelmCellFunctions.inc"
};

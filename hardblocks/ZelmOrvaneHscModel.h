#pragma once

#include "framework/ZelmModelBlock.h"
#include "hardblocks/ZelmOrvaneHscData.h"
#include "hardblocks/ZelmOrvaneHscParams.h"

class ZELM_EXPORT ZelmOrvaneHscModel;
extern template class ZelmModelBlock<ZelmOrvaneHscModel, ZelmOrvaneHscParams, ZelmOrvaneHscData>;

/// Power of hard blocks that run at a normal or a slow speed.
class ZELM_EXPORT ZelmOrvaneHscModel final
    : public ZelmModelBlock<ZelmOrvaneHscModel, ZelmOrvaneHscParams, ZelmOrvaneHscData> {
public:
    static constexpr std::string_view name = "ZelmOrvaneHscModel";

#define ZELM_CELL_ROWS "hardblocks/ZelmOrvaneHscCells.def"
#include "framework/ZelmCellFunctions.inc"
};

#pragma once

#include "fabric/ZelmOrvaneIriClkData.h"
#include "fabric/ZelmOrvaneIriClkParams.h"
#include "framework/ZelmModelBlock.h"

class ZELM_EXPORT ZelmOrvaneIriClkModel;
extern template class ZelmModelBlock<ZelmOrvaneIriClkModel, ZelmOrvaneIriClkParams, ZelmOrvaneIriClkData>;

/// Power of clocking the quads through which the fabric meets the hard blocks.
class ZELM_EXPORT ZelmOrvaneIriClkModel final
    : public ZelmModelBlock<ZelmOrvaneIriClkModel, ZelmOrvaneIriClkParams, ZelmOrvaneIriClkData> {
public:
    static constexpr std::string_view name = "ZelmOrvaneIriClkModel";

#define ZELM_CELL_ROWS "fabric/ZelmOrvaneIriClkCells.def"
#include "framework/ZelmCellFunctions.inc"
};

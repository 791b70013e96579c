#pragma once

#include "fabric/ZelmOrvaneCleClkData.h"
#include "fabric/ZelmOrvaneCleClkParams.h"
#include "framework/ZelmModelBlock.h"

class ZELM_EXPORT ZelmOrvaneCleClkModel;
extern template class ZelmModelBlock<ZelmOrvaneCleClkModel, ZelmOrvaneCleClkParams, ZelmOrvaneCleClkData>;

/// Power that a clock spends inside the logic slices that it reaches.
class ZELM_EXPORT ZelmOrvaneCleClkModel final
    : public ZelmModelBlock<ZelmOrvaneCleClkModel, ZelmOrvaneCleClkParams, ZelmOrvaneCleClkData> {
public:
    static constexpr std::string_view name = "ZelmOrvaneCleClkModel";

#define ZELM_CELL_ROWS "fabric/ZelmOrvaneCleClkCells.def"
#include "framework/ZelmCellFunctions.inc"
};

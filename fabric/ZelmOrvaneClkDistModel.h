#pragma once

#include "fabric/ZelmOrvaneClkDistData.h"
#include "fabric/ZelmOrvaneClkDistParams.h"
#include "framework/ZelmModelBlock.h"

class ZELM_EXPORT ZelmOrvaneClkDistModel;
extern template class ZelmModelBlock<ZelmOrvaneClkDistModel, ZelmOrvaneClkDistParams, ZelmOrvaneClkDistData>;

/// Currents and powers of a clock net's way from its root buffer to the leaves.
class ZELM_EXPORT ZelmOrvaneClkDistModel final
    : public ZelmModelBlock<ZelmOrvaneClkDistModel, ZelmOrvaneClkDistParams, ZelmOrvaneClkDistData> {
public:
    static constexpr std::string_view name = "ZelmOrvaneClkDistModel";

#define ZELM_CELL_ROWS "fabric/ZelmOrvaneClkDistCells.def"
#include "framework/ZelmCellFunctions.inc"
};

#pragma once

#include "fabric/ZelmOrvaneIriImuxData.h"
#include "fabric/ZelmOrvaneIriImuxParams.h"
#include "framework/ZelmModelBlock.h"

class ZELM_EXPORT ZelmOrvaneIriImuxModel;
extern template class ZelmModelBlock<ZelmOrvaneIriImuxModel, ZelmOrvaneIriImuxParams, ZelmOrvaneIriImuxData>;

/// Power of the interface's input multiplexers.
class ZELM_EXPORT ZelmOrvaneIriImuxModel final
    : public ZelmModelBlock<ZelmOrvaneIriImuxModel, ZelmOrvaneIriImuxParams, ZelmOrvaneIriImuxData> {
public:
    static constexpr std::string_view name = "ZelmOrvaneIriImuxModel";

#define ZELM_CELL_ROWS "fabric/ZelmOrvaneIriImuxCells.def"
#include "framework/ZelmCellFunctions.inc"
};

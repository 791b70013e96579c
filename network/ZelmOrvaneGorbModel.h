#pragma once

#include "framework/ZelmModelBlock.h"
#include "network/ZelmOrvaneGorbData.h"
#include "network/ZelmOrvaneGorbParams.h"

class ZELM_EXPORT ZelmOrvaneGorbModel;
extern template class ZelmModelBlock<ZelmOrvaneGorbModel, ZelmOrvaneGorbParams, ZelmOrvaneGorbData>;

/// Power of the hard on-chip memory: its controller, three fabric interfaces and one interface to the processing
/// system.
class ZELM_EXPORT ZelmOrvaneGorbModel final
    : public ZelmModelBlock<ZelmOrvaneGorbModel, ZelmOrvaneGorbParams, ZelmOrvaneGorbData> {
public:
    static constexpr std::string_view name = "ZelmOrvaneGorbModel";

#define ZELM_CELL_ROWS "network/ZelmOrvaneGorbCells.def"
#include "framework/ZelmCellFunctions.inc"
};

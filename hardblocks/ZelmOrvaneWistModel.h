#pragma once

#include "framework/ZelmModelBlock.h"
#include "hardblocks/ZelmOrvaneWistData.h"
#include "hardblocks/ZelmOrvaneWistParams.h"

class ZELM_EXPORT ZelmOrvaneWistModel;
extern template class ZelmModelBlock<ZelmOrvaneWistModel, ZelmOrvaneWistParams, ZelmOrvaneWistData>;

/// Power of the coherent PCIe module: two controllers, DMA, coherent L2 and interconnect.
class ZELM_EXPORT ZelmOrvaneWistModel final
    : public ZelmModelBlock<ZelmOrvaneWistModel, ZelmOrvaneWistParams, ZelmOrvaneWistData> {
public:
    static constexpr std::string_view name = "ZelmOrvaneWistModel";

#define ZELM_CELL_ROWS "hardblocks/ZelmOrvaneWistCells.def"
#include "framework/ZelmCellFunctions.inc"
};

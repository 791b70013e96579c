#pragma once

#include "framework/ZelmModelBlock.h"
#include "hardblocks/ZelmOrvanePciebData.h"
#include "hardblocks/ZelmOrvanePciebParams.h"

class ZELM_EXPORT ZelmOrvanePciebModel;
extern template class ZelmModelBlock<ZelmOrvanePciebModel, ZelmOrvanePciebParams, ZelmOrvanePciebData>;

/// Power of a PCIe block at its link.
class ZELM_EXPORT ZelmOrvanePciebModel final
    : public ZelmModelBlock<ZelmOrvanePciebModel, ZelmOrvanePciebParams, ZelmOrvanePciebData> {
public:
    static constexpr std::string_view name = "ZelmOrvanePciebModel";

#define ZELM_CELL_ROWS "hardblocks/ZelmOrvanePciebCells.def"
#include "framework/ZelmCellFunctions.inc"
};

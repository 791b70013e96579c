#pragma once

#include "framework/ZelmModelBlock.h"
#include "hardblocks/ZelmOrvanePcieb5Data.h"
#include "hardblocks/ZelmOrvanePcieb5Params.h"

class ZELM_EXPORT ZelmOrvanePcieb5Model;
extern template class ZelmModelBlock<ZelmOrvanePcieb5Model, ZelmOrvanePcieb5Params, ZelmOrvanePcieb5Data>;

/// Power of a newer PCIe block at its link: the PCIe block's formulas over data of its own.
class ZELM_EXPORT ZelmOrvanePcieb5Model final
    : public ZelmModelBlock<ZelmOrvanePcieb5Model, ZelmOrvanePcieb5Params, ZelmOrvanePcieb5Data> {
public:
    static constexpr std::string_view name = "ZelmOrvanePcieb5Model";

#define ZELM_CELL_ROWS "hardblocks/ZelmOrvanePcieb5Cells.def"
#include "framework/ZelmCellFunctions.inc"
};

#pragma once

#include "framework/ZelmModelBlock.h"
#include "hardblocks/ZelmOrvaneMulmData.h"
#include "hardblocks/ZelmOrvaneMulmParams.h"

class ZELM_EXPORT ZelmOrvaneMulmModel;
extern template class ZelmModelBlock<ZelmOrvaneMulmModel, ZelmOrvaneMulmParams, ZelmOrvaneMulmData>;

/// Power of a pipe block.
class ZELM_EXPORT ZelmOrvaneMulmModel final
    : public ZelmModelBlock<ZelmOrvaneMulmModel, ZelmOrvaneMulmParams, ZelmOrvaneMulmData> {
public:
    static constexpr std::string_view name = "ZelmOrvaneMulmModel";

#define ZELM_CELL_ROWS "hardblocks/ZelmOrvaneMulmCells.def"
#include "framework/ZelmCellFunctions.inc"
};

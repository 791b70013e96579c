#pragma once

#include "clocking/ZelmOrvanePspllData.h"
#include "clocking/ZelmOrvanePspllParams.h"
#include "framework/ZelmModelBlock.h"

class ZELM_EXPORT ZelmOrvanePspllModel;
extern template class ZelmModelBlock<ZelmOrvanePspllModel, ZelmOrvanePspllParams, ZelmOrvanePspllData>;

/// Currents of a PLL of the processing system, with one output whose divider is a power of two.
class ZELM_EXPORT ZelmOrvanePspllModel final
    : public ZelmModelBlock<ZelmOrvanePspllModel, ZelmOrvanePspllParams, ZelmOrvanePspllData> {
public:
    static constexpr std::string_view name = "ZelmOrvanePspllModel";

#define ZELM_CELL_ROWS "clocking/ZelmOrvanePspllCells.def"
#include "framework/ZelmCellFunctions.inc"
};

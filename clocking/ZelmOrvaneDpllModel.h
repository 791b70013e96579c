#pragma once

#include "clocking/ZelmOrvaneDpllData.h"
#include "clocking/ZelmOrvaneDpllParams.h"
#include "framework/ZelmModelBlock.h"

class ZELM_EXPORT ZelmOrvaneDpllModel;
extern template class ZelmModelBlock<ZelmOrvaneDpllModel, ZelmOrvaneDpllParams, ZelmOrvaneDpllData>;

/// Power of a digital PLL. The oscillator and the counters are on VCCAUX, the output drivers on VCCINT and VCCRAM.
class ZELM_EXPORT ZelmOrvaneDpllModel final
    : public ZelmModelBlock<ZelmOrvaneDpllModel, ZelmOrvaneDpllParams, ZelmOrvaneDpllData> {
public:
    static constexpr std::string_view name = "ZelmOrvaneDpllModel";

#define ZELM_CELL_ROWS "clocking/ZelmOrvaneDpllCells.def"
#include "framework/ZelmCellFunctions.inc"
};

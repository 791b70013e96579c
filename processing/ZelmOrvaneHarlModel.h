#pragma once

#include "framework/ZelmModelBlock.h"
#include "processing/ZelmOrvaneHarlData.h"
#include "processing/ZelmOrvaneHarlParams.h"

class ZELM_EXPORT ZelmOrvaneHarlModel;
extern template class ZelmModelBlock<ZelmOrvaneHarlModel, ZelmOrvaneHarlParams, ZelmOrvaneHarlData>;

/// Dynamic power of platform management: its interconnect and I/O unit, its PLL and the memory network's, the pads of
/// two banks and of the dedicated pins, and the analog and monitor cells.
class ZELM_EXPORT ZelmOrvaneHarlModel final
    : public ZelmModelBlock<ZelmOrvaneHarlModel, ZelmOrvaneHarlParams, ZelmOrvaneHarlData> {
public:
    static constexpr std::string_view name = "ZelmOrvaneHarlModel";

#define ZELM_CELL_ROWS "processing/ZelmOrvaneHarlCells.def"
#include "framework/ZelmCellFunctions.inc"
};

#pragma once

#include "clocking/ZelmOrvaneRuskData.h"
#include "clocking/ZelmOrvaneRuskParams.h"
#include "framework/ZelmModelBlock.h"

class ZELM_EXPORT ZelmOrvaneRuskModel;
extern template class ZelmModelBlock<ZelmOrvaneRuskModel, ZelmOrvaneRuskParams, ZelmOrvaneRuskData>;

/// Power of a PLL of the I/O banks, which also drives the I/O PHY clock, on VCCAUX and VCCINTIO.
class ZELM_EXPORT ZelmOrvaneRuskModel final
    : public ZelmModelBlock<ZelmOrvaneRuskModel, ZelmOrvaneRuskParams, ZelmOrvaneRuskData> {
public:
    static constexpr std::string_view name = "ZelmOrvaneRuskModel";

#define ZELM_CELL_ROWS "clocking/ZelmOrvaneRuskCells.def"
#include "framework/ZelmCellFunctions.inc"
};

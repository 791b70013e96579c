#pragma once

#include "fabric/ZelmOrvaneClockData.h"
#include "fabric/ZelmOrvaneClockParams.h"
#include "framework/ZelmModelBlock.h"

class ZELM_EXPORT ZelmOrvaneClockModel;
extern template class ZelmModelBlock<ZelmOrvaneClockModel, ZelmOrvaneClockParams, ZelmOrvaneClockData>;

/// What a clock net occupies: counts and probabilities that slice clocking and clock distribution take as inputs.
class ZELM_EXPORT ZelmOrvaneClockModel final
    : public ZelmModelBlock<ZelmOrvaneClockModel, ZelmOrvaneClockParams, ZelmOrvaneClockData> {
public:
    static constexpr std::string_view name = "ZelmOrvaneClockModel";

#define ZELM_CELL_ROWS "fabric/ZelmOrvaneClockCells.def"
#include "framework/ZelmCellFunctions.inc"
};

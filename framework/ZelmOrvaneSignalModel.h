#pragma once

#include "framework/ZelmModelBlock.h"
#include "framework/ZelmOrvaneSignalData.h"
#include "framework/ZelmOrvaneSignalParams.h"

class ZELM_EXPORT ZelmOrvaneSignalModel;
extern template class ZelmModelBlock<ZelmOrvaneSignalModel, ZelmOrvaneSignalParams, ZelmOrvaneSignalData>;

/// Dynamic power of ordinary routed signals: the charge that their wires move at each toggle.
class ZELM_EXPORT ZelmOrvaneSignalModel final
    : public ZelmModelBlock<ZelmOrvaneSignalModel, ZelmOrvaneSignalParams, ZelmOrvaneSignalData> {
public:
    static constexpr std::string_view name = "ZelmOrvaneSignalModel";

#define ZELM_CELL_ROWS "framework/ZelmOrvaneSignalCells.def"
#include "framework/ZelmCellFunctions.inc"
};

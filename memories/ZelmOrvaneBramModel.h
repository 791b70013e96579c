#pragma once

#include "framework/ZelmModelBlock.h"
#include "memories/ZelmOrvaneBramData.h"
#include "memories/ZelmOrvaneBramParams.h"

class ZELM_EXPORT ZelmOrvaneBramModel;
extern template class ZelmModelBlock<ZelmOrvaneBramModel, ZelmOrvaneBramParams, ZelmOrvaneBramData>;

/// Dynamic power of a group of like dual-port block memories. One memory of each cascade group is active, all others
/// stand by. In the simple-dual-port modes port A only reads and port B only writes.
class ZELM_EXPORT ZelmOrvaneBramModel final
    : public ZelmModelBlock<ZelmOrvaneBramModel, ZelmOrvaneBramParams, ZelmOrvaneBramData> {
public:
    static constexpr std::string_view name = "ZelmOrvaneBramModel";

#define ZELM_CELL_ROWS "memories/ZelmOrvaneBramCells.def"
#include "framework/ZelmCellFunctions.inc"
};

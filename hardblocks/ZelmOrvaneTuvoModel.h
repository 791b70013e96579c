#pragma once

#include "framework/ZelmModelBlock.h"
#include "hardblocks/ZelmOrvaneTuvoData.h"
#include "hardblocks/ZelmOrvaneTuvoParams.h"

class ZELM_EXPORT ZelmOrvaneTuvoModel;
extern template class ZelmModelBlock<ZelmOrvaneTuvoModel, ZelmOrvaneTuvoParams, ZelmOrvaneTuvoData>;

/// Power of a multi-rate Ethernet MAC.
class ZELM_EXPORT ZelmOrvaneTuvoModel final
    : public ZelmModelBlock<ZelmOrvaneTuvoModel, ZelmOrvaneTuvoParams, ZelmOrvaneTuvoData> {
public:
    static constexpr std::string_view name = "ZelmOrvaneTuvoModel";

#define ZELM_CELL_ROWS "hardblocks/ZelmOrvaneTuvoCells.def"
#include "framework/ZelmCellFunctions.inc"
};

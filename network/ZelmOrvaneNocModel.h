#pragma once

#include "framework/ZelmModelBlock.h"
#include "network/ZelmOrvaneNocData.h"
#include "network/ZelmOrvaneNocParams.h"

class ZELM_EXPORT ZelmOrvaneNocModel;
extern template class ZelmModelBlock<ZelmOrvaneNocModel, ZelmOrvaneNocParams, ZelmOrvaneNocData>;

/// Power of one traffic path through the network on chip, from its entry (NMU) over the switches (NPS) to its exit
/// (NSU), and of the network's clock buffers.
class ZELM_EXPORT ZelmOrvaneNocModel final
    : public ZelmModelBlock<ZelmOrvaneNocModel, ZelmOrvaneNocParams, ZelmOrvaneNocData> {
public:
    static constexpr std::string_view name = "ZelmOrvaneNocModel";

#define ZELM_CELL_ROWS "network/ZelmOrvaneNocCells.def"
#include "framework/ZelmCellFunctions.inc"
};

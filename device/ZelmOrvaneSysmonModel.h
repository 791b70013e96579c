#pragma once

#include "device/ZelmOrvaneSysmonData.h"
#include "device/ZelmOrvaneSysmonParams.h"
#include "framework/ZelmModelBlock.h"

class ZELM_EXPORT ZelmOrvaneSysmonModel;
extern template class ZelmModelBlock<ZelmOrvaneSysmonModel, ZelmOrvaneSysmonParams, ZelmOrvaneSysmonData>;

/// Supply power of the on-chip monitor network: a root per slice and satellites spread over the device.
class ZELM_EXPORT ZelmOrvaneSysmonModel final
    : public ZelmModelBlock<ZelmOrvaneSysmonModel, ZelmOrvaneSysmonParams, ZelmOrvaneSysmonData> {
public:
    static constexpr std::string_view name = "ZelmOrvaneSysmonModel";

#define ZELM_CELL_ROWS "device/ZelmOrvaneSysmonCells.def"
#include "framework/ZelmCellFunctions.inc"
};

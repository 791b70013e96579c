#pragma once

#include "framework/ZelmDataBlock.h"

class ZELM_EXPORT ZelmOrvaneSysmonData;
extern template class ZelmDataBlock<ZelmOrvaneSysmonData>;

/// Power of one root and one satellite of the monitor network, and how many of them a device has.
class ZELM_EXPORT ZelmOrvaneSysmonData final : public ZelmDataBlock<ZelmOrvaneSysmonData> {
public:
    static constexpr std::string_view name = "ZelmOrvaneSysmonData";

    ZelmOrvaneSysmonData()
    {
        reset();
    }

#define ZELM_TABLE_ROWS "device/ZelmOrvaneSysmonTables.def"
#include "framework/ZelmTableMembers.inc"
};

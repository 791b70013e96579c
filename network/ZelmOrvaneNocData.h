#pragma once

#include "framework/ZelmDataBlock.h"

class ZELM_EXPORT ZelmOrvaneNocData;
extern template class ZelmDataBlock<ZelmOrvaneNocData>;

/// Traffic paths of the network on chip: switches per path, clock buffers and unit powers of the devices.
class ZELM_EXPORT ZelmOrvaneNocData final : public ZelmDataBlock<ZelmOrvaneNocData> {
public:
    static constexpr std::string_view name = "ZelmOrvaneNocData";

    ZelmOrvaneNocData()
    {
        reset();
    }

#define ZELM_TABLE_ROWS "network/ZelmOrvaneNocTables.def"
#include "framework/ZelmTableMembers.inc"
};

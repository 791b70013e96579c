#pragma once

#include "framework/ZelmDataBlock.h"

class ZELM_EXPORT ZelmOrvaneTuvoData;
extern template class ZelmDataBlock<ZelmOrvaneTuvoData>;

/// Power of the multi-rate Ethernet MAC by configuration and activity.
class ZELM_EXPORT ZelmOrvaneTuvoData final : public ZelmDataBlock<ZelmOrvaneTuvoData> {
public:
    static constexpr std::string_view name = "ZelmOrvaneTuvoData";

    ZelmOrvaneTuvoData()
    {
        reset();
    }

#define ZELM_TABLE_ROWS "hardblocks/ZelmOrvaneTuvoTables.def"
#include "framework/ZelmTableMembers.inc"
};

#pragma once

#include "framework/ZelmDataBlock.h"

class ZELM_EXPORT ZelmOrvaneJorlData;
extern template class ZelmDataBlock<ZelmOrvaneJorlData>;

/// Power of an Ethernet MAC in each of its channel modes.
class ZELM_EXPORT ZelmOrvaneJorlData final : public ZelmDataBlock<ZelmOrvaneJorlData> {
public:
    static constexpr std::string_view name = "ZelmOrvaneJorlData";

    ZelmOrvaneJorlData()
    {
        reset();
    }

#define ZELM_TABLE_ROWS "hardblocks/ZelmOrvaneJorlTables.def"
#include "framework/ZelmTableMembers.inc"
};

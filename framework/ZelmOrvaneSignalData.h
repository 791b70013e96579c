#pragma once

#include "framework/ZelmDataBlock.h"

class ZELM_EXPORT ZelmOrvaneSignalData;
extern template class ZelmDataBlock<ZelmOrvaneSignalData>;

/// Capacitance of the routing that ordinary signals cross.
class ZELM_EXPORT ZelmOrvaneSignalData final : public ZelmDataBlock<ZelmOrvaneSignalData> {
public:
    static constexpr std::string_view name = "ZelmOrvaneSignalData";

    ZelmOrvaneSignalData()
    {
        reset();
    }

#define ZELM_TABLE_ROWS "framework/ZelmOrvaneSignalTables.def"
#include "framework/ZelmTableMembers.inc"
};

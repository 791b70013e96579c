#pragma once

#include "framework/ZelmDataBlock.h"

class ZELM_EXPORT ZelmOrvaneVekoData;
extern template class ZelmDataBlock<ZelmOrvaneVekoData>;

/// Currents of a mixed-mode clock manager.
class ZELM_EXPORT ZelmOrvaneVekoData final : public ZelmDataBlock<ZelmOrvaneVekoData> {
public:
    static constexpr std::string_view name = "ZelmOrvaneVekoData";

    ZelmOrvaneVekoData()
    {
        reset();
    }

#define ZELM_TABLE_ROWS "clocking/ZelmOrvaneVekoTables.def"
#include "framework/ZelmTableMembers.inc"
};

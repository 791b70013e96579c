#pragma once

#include "framework/ZelmDataBlock.h"

class ZELM_EXPORT ZelmOrvaneStaticData;
extern template class ZelmDataBlock<ZelmOrvaneStaticData>;

/// Leakage of every device and resource: curves over temperature and voltage, binning, rail voltages.
class ZELM_EXPORT ZelmOrvaneStaticData final : public ZelmDataBlock<ZelmOrvaneStaticData> {
public:
    static constexpr std::string_view name = "ZelmOrvaneStaticData";

    ZelmOrvaneStaticData()
    {
        reset();
    }

#define ZELM_TABLE_ROWS "device/ZelmOrvaneStaticTables.def"
#include "framework/ZelmTableMembers.inc"
};

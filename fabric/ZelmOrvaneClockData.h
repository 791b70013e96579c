#pragma once

#include "framework/ZelmDataBlock.h"

class ZELM_EXPORT ZelmOrvaneClockData;
extern template class ZelmDataBlock<ZelmOrvaneClockData>;

/// Parameters of the curve that tells how much of the clock network a net turns on.
class ZELM_EXPORT ZelmOrvaneClockData final : public ZelmDataBlock<ZelmOrvaneClockData> {
public:
    static constexpr std::string_view name = "ZelmOrvaneClockData";

    ZelmOrvaneClockData()
    {
        reset();
    }

#define ZELM_TABLE_ROWS "fabric/ZelmOrvaneClockTables.def"
#include "framework/ZelmTableMembers.inc"
};

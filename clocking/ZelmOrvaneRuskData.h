#pragma once

#include "framework/ZelmDataBlock.h"

class ZELM_EXPORT ZelmOrvaneRuskData;
extern template class ZelmDataBlock<ZelmOrvaneRuskData>;

/// Currents of a PLL of the I/O banks.
class ZELM_EXPORT ZelmOrvaneRuskData final : public ZelmDataBlock<ZelmOrvaneRuskData> {
public:
    static constexpr std::string_view name = "ZelmOrvaneRuskData";

    ZelmOrvaneRuskData()
    {
        reset();
    }

#define ZELM_TABLE_ROWS "clocking/ZelmOrvaneRuskTables.def"
#include "framework/ZelmTableMembers.inc"
};

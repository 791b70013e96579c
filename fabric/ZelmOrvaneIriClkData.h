#pragma once

#include "framework/ZelmDataBlock.h"

class ZELM_EXPORT ZelmOrvaneIriClkData;
extern template class ZelmDataBlock<ZelmOrvaneIriClkData>;

/// Currents and capacitances of the interface quads' clocking.
class ZELM_EXPORT ZelmOrvaneIriClkData final : public ZelmDataBlock<ZelmOrvaneIriClkData> {
public:
    static constexpr std::string_view name = "ZelmOrvaneIriClkData";

    ZelmOrvaneIriClkData()
    {
        reset();
    }

#define ZELM_TABLE_ROWS "fabric/ZelmOrvaneIriClkTables.def"
#include "framework/ZelmTableMembers.inc"
};

#pragma once

#include "framework/ZelmDataBlock.h"

class ZELM_EXPORT ZelmOrvaneCleClkData;
extern template class ZelmDataBlock<ZelmOrvaneCleClkData>;

/// Capacitances that a clock charges inside a logic slice.
class ZELM_EXPORT ZelmOrvaneCleClkData final : public ZelmDataBlock<ZelmOrvaneCleClkData> {
public:
    static constexpr std::string_view name = "ZelmOrvaneCleClkData";

    ZelmOrvaneCleClkData()
    {
        reset();
    }

#define ZELM_TABLE_ROWS "fabric/ZelmOrvaneCleClkTables.def"
#include "framework/ZelmTableMembers.inc"
};

#pragma once

#include "framework/ZelmDataBlock.h"

class ZELM_EXPORT ZelmOrvaneMulmData;
extern template class ZelmDataBlock<ZelmOrvaneMulmData>;

/// Power of the pipe block by mode, channels and link speed.
class ZELM_EXPORT ZelmOrvaneMulmData final : public ZelmDataBlock<ZelmOrvaneMulmData> {
public:
    static constexpr std::string_view name = "ZelmOrvaneMulmData";

    ZelmOrvaneMulmData()
    {
        reset();
    }

#define ZELM_TABLE_ROWS "hardblocks/ZelmOrvaneMulmTables.def"
#include "framework/ZelmTableMembers.inc"
};

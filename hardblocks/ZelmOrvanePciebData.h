#pragma once

#include "framework/ZelmDataBlock.h"

class ZELM_EXPORT ZelmOrvanePciebData;
extern template class ZelmDataBlock<ZelmOrvanePciebData>;

/// Current of the PCIe block by link speed and width.
class ZELM_EXPORT ZelmOrvanePciebData final : public ZelmDataBlock<ZelmOrvanePciebData> {
public:
    static constexpr std::string_view name = "ZelmOrvanePciebData";

    ZelmOrvanePciebData()
    {
        reset();
    }

#define ZELM_TABLE_ROWS "hardblocks/ZelmOrvanePciebTables.def"
#include "framework/ZelmTableMembers.inc"
};

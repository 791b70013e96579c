#pragma once

#include "framework/ZelmDataBlock.h"

class ZELM_EXPORT ZelmOrvaneBramData;
extern template class ZelmDataBlock<ZelmOrvaneBramData>;

/// Access and standby currents of the block memories, by primitive and port widths.
class ZELM_EXPORT ZelmOrvaneBramData final : public ZelmDataBlock<ZelmOrvaneBramData> {
public:
    static constexpr std::string_view name = "ZelmOrvaneBramData";

    ZelmOrvaneBramData()
    {
        reset();
    }

#define ZELM_TABLE_ROWS "memories/ZelmOrvaneBramTables.def"
#include "framework/ZelmTableMembers.inc"
};

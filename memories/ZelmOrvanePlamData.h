#pragma once

#include "framework/ZelmDataBlock.h"

class ZELM_EXPORT ZelmOrvanePlamData;
extern template class ZelmDataBlock<ZelmOrvanePlamData>;

/// Currents of what a large RAM does in a cycle, and the factors that scale them.
class ZELM_EXPORT ZelmOrvanePlamData final : public ZelmDataBlock<ZelmOrvanePlamData> {
public:
    static constexpr std::string_view name = "ZelmOrvanePlamData";

    ZelmOrvanePlamData()
    {
        reset();
    }

#define ZELM_TABLE_ROWS "memories/ZelmOrvanePlamTables.def"
#include "framework/ZelmTableMembers.inc"
};

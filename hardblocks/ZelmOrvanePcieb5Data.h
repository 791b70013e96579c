#pragma once

#include "framework/ZelmDataBlock.h"

class ZELM_EXPORT ZelmOrvanePcieb5Data;
extern template class ZelmDataBlock<ZelmOrvanePcieb5Data>;

/// Current of the newer PCIe block by link speed and width.
class ZELM_EXPORT ZelmOrvanePcieb5Data final : public ZelmDataBlock<ZelmOrvanePcieb5Data> {
public:
    static constexpr std::string_view name = "ZelmOrvanePcieb5Data";

    ZelmOrvanePcieb5Data()
    {
        reset();
    }

#define ZELM_TABLE_ROWS "hardblocks/ZelmOrvanePcieb5Tables.def"
#include "framework/ZelmTableMembers.inc"
};

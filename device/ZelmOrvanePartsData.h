#pragma once

#include "framework/ZelmDataBlock.h"

class ZELM_EXPORT ZelmOrvanePartsData;
extern template class ZelmDataBlock<ZelmOrvanePartsData>;

/// What can be ordered: the devices' series, parts and resource counts.
class ZELM_EXPORT ZelmOrvanePartsData final : public ZelmDataBlock<ZelmOrvanePartsData> {
public:
    static constexpr std::string_view name = "ZelmOrvanePartsData";

    ZelmOrvanePartsData()
    {
        reset();
    }

#define ZELM_TABLE_ROWS "device/ZelmOrvanePartsTables.def"
#include "framework/ZelmTableMembers.inc"
};

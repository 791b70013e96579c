#pragma once

#include "framework/ZelmDataBlock.h"

class ZELM_EXPORT ZelmOrvaneIlknData;
extern template class ZelmDataBlock<ZelmOrvaneIlknData>;

/// Power of an Interlaken core in each of its modes.
class ZELM_EXPORT ZelmOrvaneIlknData final : public ZelmDataBlock<ZelmOrvaneIlknData> {
public:
    static constexpr std::string_view name = "ZelmOrvaneIlknData";

    ZelmOrvaneIlknData()
    {
        reset();
    }

#define ZELM_TABLE_ROWS "hardblocks/ZelmOrvaneIlknTables.def"
#include "framework/ZelmTableMembers.inc"
};

#pragma once

#include "framework/ZelmDataBlock.h"

class ZELM_EXPORT ZelmOrvaneNemtData;
extern template class ZelmDataBlock<ZelmOrvaneNemtData>;

/// Power per MHz of the compute array's tiles, memories, streams and shims, and what each device offers.
class ZELM_EXPORT ZelmOrvaneNemtData final : public ZelmDataBlock<ZelmOrvaneNemtData> {
public:
    static constexpr std::string_view name = "ZelmOrvaneNemtData";

    ZelmOrvaneNemtData()
    {
        reset();
    }

#define ZELM_TABLE_ROWS "hardblocks/ZelmOrvaneNemtTables.def"
#include "framework/ZelmTableMembers.inc"
};

#pragma once

#include "framework/ZelmDataBlock.h"

class ZELM_EXPORT ZelmOrvaneYondData;
extern template class ZelmDataBlock<ZelmOrvaneYondData>;

/// What the items of the processing system draw per MHz, and how its I/O banks are made up.
class ZELM_EXPORT ZelmOrvaneYondData final : public ZelmDataBlock<ZelmOrvaneYondData> {
public:
    static constexpr std::string_view name = "ZelmOrvaneYondData";

    ZelmOrvaneYondData()
    {
        reset();
    }

#define ZELM_TABLE_ROWS "processing/ZelmOrvaneYondTables.def"
#include "framework/ZelmTableMembers.inc"
};

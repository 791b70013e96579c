#pragma once

#include "framework/ZelmDataBlock.h"

class ZELM_EXPORT ZelmOrvaneIologicData;
extern template class ZelmDataBlock<ZelmOrvaneIologicData>;

/// Core current of the I/O registers, by mode.
class ZELM_EXPORT ZelmOrvaneIologicData final : public ZelmDataBlock<ZelmOrvaneIologicData> {
public:
    static constexpr std::string_view name = "ZelmOrvaneIologicData";

    ZelmOrvaneIologicData()
    {
        reset();
    }

#define ZELM_TABLE_ROWS "io/ZelmOrvaneIologicTables.def"
#include "framework/ZelmTableMembers.inc"
};

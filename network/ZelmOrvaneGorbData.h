#pragma once

#include "framework/ZelmDataBlock.h"

class ZELM_EXPORT ZelmOrvaneGorbData;
extern template class ZelmDataBlock<ZelmOrvaneGorbData>;

/// Power of the hard on-chip memory: its controller and memory banks.
class ZELM_EXPORT ZelmOrvaneGorbData final : public ZelmDataBlock<ZelmOrvaneGorbData> {
public:
    static constexpr std::string_view name = "ZelmOrvaneGorbData";

    ZelmOrvaneGorbData()
    {
        reset();
    }

#define ZELM_TABLE_ROWS "network/ZelmOrvaneGorbTables.def"
#include "framework/ZelmTableMembers.inc"
};

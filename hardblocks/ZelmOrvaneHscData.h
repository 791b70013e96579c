#pragma once

#include "framework/ZelmDataBlock.h"

class ZELM_EXPORT ZelmOrvaneHscData;
extern template class ZelmDataBlock<ZelmOrvaneHscData>;

/// Power of the two-speed block at each of its speeds.
class ZELM_EXPORT ZelmOrvaneHscData final : public ZelmDataBlock<ZelmOrvaneHscData> {
public:
    static constexpr std::string_view name = "ZelmOrvaneHscData";

    ZelmOrvaneHscData()
    {
        reset();
    }

#define ZELM_TABLE_ROWS "hardblocks/ZelmOrvaneHscTables.def"
#include "framework/ZelmTableMembers.inc"
};

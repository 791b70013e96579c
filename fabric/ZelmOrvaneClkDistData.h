#pragma once

#include "framework/ZelmDataBlock.h"

class ZELM_EXPORT ZelmOrvaneClkDistData;
extern template class ZelmDataBlock<ZelmOrvaneClkDistData>;

/// Currents of the clock network's buffers, segments and leaves, and the voltages of their simulation.
class ZELM_EXPORT ZelmOrvaneClkDistData final : public ZelmDataBlock<ZelmOrvaneClkDistData> {
public:
    static constexpr std::string_view name = "ZelmOrvaneClkDistData";

    ZelmOrvaneClkDistData()
    {
        reset();
    }

#define ZELM_TABLE_ROWS "fabric/ZelmOrvaneClkDistTables.def"
#include "framework/ZelmTableMembers.inc"
};

#pragma once

#include "framework/ZelmDataBlock.h"

class ZELM_EXPORT ZelmOrvaneIriImuxData;
extern template class ZelmDataBlock<ZelmOrvaneIriImuxData>;

/// Currents of the interface's input multiplexers by mode.
class ZELM_EXPORT ZelmOrvaneIriImuxData final : public ZelmDataBlock<ZelmOrvaneIriImuxData> {
public:
    static constexpr std::string_view name = "ZelmOrvaneIriImuxData";

    ZelmOrvaneIriImuxData()
    {
        reset();
    }

#define ZELM_TABLE_ROWS "fabric/ZelmOrvaneIriImuxTables.def"
#include "framework/ZelmTableMembers.inc"
};

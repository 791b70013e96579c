#pragma once

#include "framework/ZelmDataBlock.h"

class ZELM_EXPORT ZelmOrvaneWistData;
extern template class ZelmDataBlock<ZelmOrvaneWistData>;

/// Power per MHz of the coherent PCIe module's parts, and their clocks by link configuration.
class ZELM_EXPORT ZelmOrvaneWistData final : public ZelmDataBlock<ZelmOrvaneWistData> {
public:
    static constexpr std::string_view name = "ZelmOrvaneWistData";

    ZelmOrvaneWistData()
    {
        reset();
    }

#define ZELM_TABLE_ROWS "hardblocks/ZelmOrvaneWistTables.def"
#include "framework/ZelmTableMembers.inc"
};

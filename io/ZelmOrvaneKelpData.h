#pragma once

#include "framework/ZelmDataBlock.h"

class ZELM_EXPORT ZelmOrvaneKelpData;
extern template class ZelmDataBlock<ZelmOrvaneKelpData>;

/// Currents of a nibble's bitslices and of their control.
class ZELM_EXPORT ZelmOrvaneKelpData final : public ZelmDataBlock<ZelmOrvaneKelpData> {
public:
    static constexpr std::string_view name = "ZelmOrvaneKelpData";

    ZelmOrvaneKelpData()
    {
        reset();
    }

#define ZELM_TABLE_ROWS "io/ZelmOrvaneKelpTables.def"
#include "framework/ZelmTableMembers.inc"
};

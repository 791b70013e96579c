#pragma once

#include "framework/ZelmDataBlock.h"

class ZELM_EXPORT ZelmOrvaneNaltData;
extern template class ZelmDataBlock<ZelmOrvaneNaltData>;

/// Currents and capacitances of the high-density I/O standards.
class ZELM_EXPORT ZelmOrvaneNaltData final : public ZelmDataBlock<ZelmOrvaneNaltData> {
public:
    static constexpr std::string_view name = "ZelmOrvaneNaltData";

    ZelmOrvaneNaltData()
    {
        reset();
    }

#define ZELM_TABLE_ROWS "io/ZelmOrvaneNaltTables.def"
#include "framework/ZelmTableMembers.inc"
};

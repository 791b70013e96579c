#pragma once

#include "framework/ZelmDataBlock.h"

class ZELM_EXPORT ZelmOrvaneSelvData;
extern template class ZelmDataBlock<ZelmOrvaneSelvData>;

/// Currents and capacitances of the high-performance I/O standards.
class ZELM_EXPORT ZelmOrvaneSelvData final : public ZelmDataBlock<ZelmOrvaneSelvData> {
public:
    static constexpr std::string_view name = "ZelmOrvaneSelvData";

    ZelmOrvaneSelvData()
    {
        reset();
    }

#define ZELM_TABLE_ROWS "io/ZelmOrvaneSelvTables.def"
#include "framework/ZelmTableMembers.inc"
};

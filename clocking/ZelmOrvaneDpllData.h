#pragma once

#include "framework/ZelmDataBlock.h"

class ZELM_EXPORT ZelmOrvaneDpllData;
extern template class ZelmDataBlock<ZelmOrvaneDpllData>;

/// Currents of a digital PLL.
class ZELM_EXPORT ZelmOrvaneDpllData final : public ZelmDataBlock<ZelmOrvaneDpllData> {
public:
    static constexpr std::string_view name = "ZelmOrvaneDpllData";

    ZelmOrvaneDpllData()
    {
        reset();
    }

#define ZELM_TABLE_ROWS "clocking/ZelmOrvaneDpllTables.def"
#include "framework/ZelmTableMembers.inc"
};

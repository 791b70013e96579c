#pragma once

#include "framework/ZelmDataBlock.h"

class ZELM_EXPORT ZelmOrvanePspllData;
extern template class ZelmDataBlock<ZelmOrvanePspllData>;

/// Currents of a PLL of the processing system.
class ZELM_EXPORT ZelmOrvanePspllData final : public ZelmDataBlock<ZelmOrvanePspllData> {
public:
    static constexpr std::string_view name = "ZelmOrvanePspllData";

    ZelmOrvanePspllData()
    {
        reset();
    }

#define ZELM_TABLE_ROWS "clocking/ZelmOrvanePspllTables.def"
#include "framework/ZelmTableMembers.inc"
};

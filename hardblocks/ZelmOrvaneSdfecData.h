#pragma once

#include "framework/ZelmDataBlock.h"

class ZELM_EXPORT ZelmOrvaneSdfecData;
extern template class ZelmDataBlock<ZelmOrvaneSdfecData>;

/// Current of the forward-error-correction core in each of its modes.
class ZELM_EXPORT ZelmOrvaneSdfecData final : public ZelmDataBlock<ZelmOrvaneSdfecData> {
public:
    static constexpr std::string_view name = "ZelmOrvaneSdfecData";

    ZelmOrvaneSdfecData()
    {
        reset();
    }

#define ZELM_TABLE_ROWS "hardblocks/ZelmOrvaneSdfecTables.def"
#include "framework/ZelmTableMembers.inc"
};

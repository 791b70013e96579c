#pragma once

#include "framework/ZelmDataBlock.h"

class ZELM_EXPORT ZelmOrvaneDdrmcData;
extern template class ZelmDataBlock<ZelmOrvaneDdrmcData>;

/// DDR memory controllers: data rate and power of each characterised configuration.
class ZELM_EXPORT ZelmOrvaneDdrmcData final : public ZelmDataBlock<ZelmOrvaneDdrmcData> {
public:
    static constexpr std::string_view name = "ZelmOrvaneDdrmcData";

    ZelmOrvaneDdrmcData()
    {
        reset();
    }

#define ZELM_TABLE_ROWS "network/ZelmOrvaneDdrmcTables.def"
#include "framework/ZelmTableMembers.inc"
};

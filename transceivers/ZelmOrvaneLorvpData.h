#pragma once

#include "framework/ZelmDataBlock.h"

class ZELM_EXPORT ZelmOrvaneLorvpData;
extern template class ZelmDataBlock<ZelmOrvaneLorvpData>;

/// Lines of power over data rate or clock frequency, and fixed powers, of one channel of the enhanced transceiver.
class ZELM_EXPORT ZelmOrvaneLorvpData final : public ZelmDataBlock<ZelmOrvaneLorvpData> {
public:
    static constexpr std::string_view name = "ZelmOrvaneLorvpData";

    ZelmOrvaneLorvpData()
    {
        reset();
    }

#define ZELM_TABLE_ROWS "transceivers/ZelmOrvaneLorvpTables.def"
#include "framework/ZelmTableMembers.inc"
};

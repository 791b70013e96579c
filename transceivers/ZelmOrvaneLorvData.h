#pragma once

#include "framework/ZelmDataBlock.h"

class ZELM_EXPORT ZelmOrvaneLorvData;
extern template class ZelmDataBlock<ZelmOrvaneLorvData>;

/// Lines of power over data rate or clock frequency, and fixed powers, of one channel of the transceiver.
class ZELM_EXPORT ZelmOrvaneLorvData final : public ZelmDataBlock<ZelmOrvaneLorvData> {
public:
    static constexpr std::string_view name = "ZelmOrvaneLorvData";

    ZelmOrvaneLorvData()
    {
        reset();
    }

#define ZELM_TABLE_ROWS "transceivers/ZelmOrvaneLorvTables.def"
#include "framework/ZelmTableMembers.inc"
};

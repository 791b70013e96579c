#pragma once

#include "framework/ZelmDataBlock.h"

class ZELM_EXPORT ZelmOrvaneSarnData;
extern template class ZelmDataBlock<ZelmOrvaneSarnData>;

/// Lines of power over data rate or clock frequency, and fixed powers by reach and baud rate, of one PAM4 channel.
class ZELM_EXPORT ZelmOrvaneSarnData final : public ZelmDataBlock<ZelmOrvaneSarnData> {
public:
    static constexpr std::string_view name = "ZelmOrvaneSarnData";

    ZelmOrvaneSarnData()
    {
        reset();
    }

#define ZELM_TABLE_ROWS "transceivers/ZelmOrvaneSarnTables.def"
#include "framework/ZelmTableMembers.inc"
};

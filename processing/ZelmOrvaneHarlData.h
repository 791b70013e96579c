#pragma once

#include "framework/ZelmDataBlock.h"

class ZELM_EXPORT ZelmOrvaneHarlData;
extern template class ZelmDataBlock<ZelmOrvaneHarlData>;

/// What the items of platform management draw: logic, PLLs and pads per MHz, analog cells as they are.
class ZELM_EXPORT ZelmOrvaneHarlData final : public ZelmDataBlock<ZelmOrvaneHarlData> {
public:
    static constexpr std::string_view name = "ZelmOrvaneHarlData";

    ZelmOrvaneHarlData()
    {
        reset();
    }

#define ZELM_TABLE_ROWS "processing/ZelmOrvaneHarlTables.def"
#include "framework/ZelmTableMembers.inc"
};

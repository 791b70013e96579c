#pragma once

#include "framework/ZelmDataBlock.h"

class ZELM_EXPORT ZelmOrvaneWist5Data;
extern template class ZelmDataBlock<ZelmOrvaneWist5Data>;

/// Power per MHz of the newer coherent PCIe module's parts, and its PLL's at two frequencies.
class ZELM_EXPORT ZelmOrvaneWist5Data final : public ZelmDataBlock<ZelmOrvaneWist5Data> {
public:
    static constexpr std::string_view name = "ZelmOrvaneWist5Data";

    ZelmOrvaneWist5Data()
    {
        reset();
    }

#define ZELM_TABLE_ROWS "hardblocks/ZelmOrvaneWist5Tables.def"
#include "framework/ZelmTableMembers.inc"
};

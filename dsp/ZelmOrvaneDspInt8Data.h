#pragma once

#include "framework/ZelmDataBlock.h"

class ZELM_EXPORT ZelmOrvaneDspInt8Data;
extern template class ZelmDataBlock<ZelmOrvaneDspInt8Data>;

/// Currents of the narrow-integer DSP slice's components by operational mode.
class ZELM_EXPORT ZelmOrvaneDspInt8Data final : public ZelmDataBlock<ZelmOrvaneDspInt8Data> {
public:
    static constexpr std::string_view name = "ZelmOrvaneDspInt8Data";

    ZelmOrvaneDspInt8Data()
    {
        reset();
    }

#define ZELM_TABLE_ROWS "dsp/ZelmOrvaneDspInt8Tables.def"
#include "framework/ZelmTableMembers.inc"
};

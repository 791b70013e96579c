#pragma once

#include "framework/ZelmDataBlock.h"

class ZELM_EXPORT ZelmOrvaneDspInt24Data;
extern template class ZelmDataBlock<ZelmOrvaneDspInt24Data>;

/// Currents of the integer DSP slice's components by operational mode.
class ZELM_EXPORT ZelmOrvaneDspInt24Data final : public ZelmDataBlock<ZelmOrvaneDspInt24Data> {
public:
    static constexpr std::string_view name = "ZelmOrvaneDspInt24Data";

    ZelmOrvaneDspInt24Data()
    {
        reset();
    }

#define ZELM_TABLE_ROWS "dsp/ZelmOrvaneDspInt24Tables.def"
#include "framework/ZelmTableMembers.inc"
};

#pragma once

#include "framework/ZelmDataBlock.h"

class ZELM_EXPORT ZelmOrvaneDspFp32Data;
extern template class ZelmDataBlock<ZelmOrvaneDspFp32Data>;

/// Currents of the floating-point DSP slice's components by operational mode.
class ZELM_EXPORT ZelmOrvaneDspFp32Data final : public ZelmDataBlock<ZelmOrvaneDspFp32Data> {
public:
    static constexpr std::string_view name = "ZelmOrvaneDspFp32Data";

    ZelmOrvaneDspFp32Data()
    {
        reset();
    }

#define ZELM_TABLE_ROWS "dsp/ZelmOrvaneDspFp32Tables.def"
#include "framework/ZelmTableMembers.inc"
};

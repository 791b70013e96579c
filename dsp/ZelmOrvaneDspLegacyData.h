#pragma once

#include "framework/ZelmDataBlock.h"

class ZELM_EXPORT ZelmOrvaneDspLegacyData;
extern template class ZelmDataBlock<ZelmOrvaneDspLegacyData>;

/// Currents of the older DSP slice's components by operational mode, and of its wide XOR.
class ZELM_EXPORT ZelmOrvaneDspLegacyData final : public ZelmDataBlock<ZelmOrvaneDspLegacyData> {
public:
    static constexpr std::string_view name = "ZelmOrvaneDspLegacyData";

    ZelmOrvaneDspLegacyData()
    {
        reset();
    }

#define ZELM_TABLE_ROWS "dsp/ZelmOrvaneDspLegacyTables.def"
#include "framework/ZelmTableMembers.inc"
};

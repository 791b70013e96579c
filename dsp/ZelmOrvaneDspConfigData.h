#pragma once

#include "framework/ZelmDataBlock.h"

class ZELM_EXPORT ZelmOrvaneDspConfigData;
extern template class ZelmDataBlock<ZelmOrvaneDspConfigData>;

/// The display-level modes of a DSP slice, for the host to choose from.
class ZELM_EXPORT ZelmOrvaneDspConfigData final : public ZelmDataBlock<ZelmOrvaneDspConfigData> {
public:
    static constexpr std::string_view name = "ZelmOrvaneDspConfigData";

    ZelmOrvaneDspConfigData()
    {
        reset();
    }

#define ZELM_TABLE_ROWS "dsp/ZelmOrvaneDspConfigTables.def"
#include "framework/ZelmTableMembers.inc"
};

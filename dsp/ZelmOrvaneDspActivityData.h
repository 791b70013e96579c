#pragma once

#include "framework/ZelmDataBlock.h"

class ZELM_EXPORT ZelmOrvaneDspActivityData;
extern template class ZelmDataBlock<ZelmOrvaneDspActivityData>;

/// Operational mode by usage, and each mode's display text and output activity.
class ZELM_EXPORT ZelmOrvaneDspActivityData final : public ZelmDataBlock<ZelmOrvaneDspActivityData> {
public:
    static constexpr std::string_view name = "ZelmOrvaneDspActivityData";

    ZelmOrvaneDspActivityData()
    {
        reset();
    }

#define ZELM_TABLE_ROWS "dsp/ZelmOrvaneDspActivityTables.def"
#include "framework/ZelmTableMembers.inc"
};

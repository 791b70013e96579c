#pragma once

#include "framework/ZelmDataBlock.h"

class ZELM_EXPORT ZelmOrvaneDspCplxData;
extern template class ZelmDataBlock<ZelmOrvaneDspCplxData>;

/// Currents of the components of a complex multiplier's DSP slices and stages by operational mode.
class ZELM_EXPORT ZelmOrvaneDspCplxData final : public ZelmDataBlock<ZelmOrvaneDspCplxData> {
public:
    static constexpr std::string_view name = "ZelmOrvaneDspCplxData";

    ZelmOrvaneDspCplxData()
    {
        reset();
    }

#define ZELM_TABLE_ROWS "dsp/ZelmOrvaneDspCplxTables.def"
#include "framework/ZelmTableMembers.inc"
};

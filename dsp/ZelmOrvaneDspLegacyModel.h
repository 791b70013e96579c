#pragma once

#include "dsp/ZelmOrvaneDspLegacyData.h"
#include "dsp/ZelmOrvaneDspLegacyParams.h"
#include "framework/ZelmModelBlock.h"

class ZELM_EXPORT ZelmOrvaneDspLegacyModel;
extern template class ZelmModelBlock<ZelmOrvaneDspLegacyModel, ZelmOrvaneDspLegacyParams, ZelmOrvaneDspLegacyData>;

/// Dynamic power of DSP slices of the older kind, with their wide XOR.
class ZELM_EXPORT ZelmOrvaneDspLegacyModel final
    : public ZelmModelBlock<ZelmOrvaneDspLegacyModel, ZelmOrvaneDspLegacyParams, ZelmOrvaneDspLegacyData> {
public:
    static constexpr std::string_view name = "ZelmOrvaneDspLegacyModel";

#define ZELM_CELL_ROWS "dsp/ZelmOrvaneDspLegacyCells.def"
#include "framework/ZelmCellFunctions.inc"
};

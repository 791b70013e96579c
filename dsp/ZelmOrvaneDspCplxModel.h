#pragma once

#include "dsp/ZelmOrvaneDspCplxData.h"
#include "dsp/ZelmOrvaneDspCplxParams.h"
#include "framework/ZelmModelBlock.h"

class ZELM_EXPORT ZelmOrvaneDspCplxModel;
extern template class ZelmModelBlock<ZelmOrvaneDspCplxModel, ZelmOrvaneDspCplxParams, ZelmOrvaneDspCplxData>;

/// Dynamic power of a complex multiplier: two DSP slices and one pair of complex stages.
class ZELM_EXPORT ZelmOrvaneDspCplxModel final
    : public ZelmModelBlock<ZelmOrvaneDspCplxModel, ZelmOrvaneDspCplxParams, ZelmOrvaneDspCplxData> {
public:
    static constexpr std::string_view name = "ZelmOrvaneDspCplxModel";

#define ZELM_CELL_ROWS "dsp/ZelmOrvaneDspCplxCells.def"
#include "framework/ZelmCellFunctions.inc"
};

#pragma once

#include "dsp/ZelmOrvaneDspActivityData.h"
#include "dsp/ZelmOrvaneDspActivityParams.h"
#include "framework/ZelmModelBlock.h"

class ZELM_EXPORT ZelmOrvaneDspActivityModel;
extern template class ZelmModelBlock<ZelmOrvaneDspActivityModel, ZelmOrvaneDspActivityParams,
                                     ZelmOrvaneDspActivityData>;

/// What a DSP slice is used for: its operational mode, and the toggle rate that it drives at its output.
class ZELM_EXPORT ZelmOrvaneDspActivityModel final
    : public ZelmModelBlock<ZelmOrvaneDspActivityModel, ZelmOrvaneDspActivityParams, ZelmOrvaneDspActivityData> {
public:
    static constexpr std::string_view name = "ZelmOrvaneDspActivityModel";

#define ZELM_CELL_ROWS "dsp/ZelmOrvaneDspActivityCells.def"
#include "framework/ZelmCellFunctions.inc"
};

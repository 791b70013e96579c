#pragma once

#include "dsp/ZelmOrvaneDspInt24Data.h"
#include "dsp/ZelmOrvaneDspInt24Params.h"
#include "framework/ZelmModelBlock.h"

class ZELM_EXPORT ZelmOrvaneDspInt24Model;
extern template class ZelmModelBlock<ZelmOrvaneDspInt24Model, ZelmOrvaneDspInt24Params, ZelmOrvaneDspInt24Data>;

/// Dynamic power of DSP slices in integer mode.
class ZELM_EXPORT ZelmOrvaneDspInt24Model final
    : public ZelmModelBlock<ZelmOrvaneDspInt24Model, ZelmOrvaneDspInt24Params, ZelmOrvaneDspInt24Data> {
public:
    static constexpr std::string_view name = "ZelmOrvaneDspInt24Model";

#define ZELM_CELL_ROWS "dsp/ZelmOrvaneDspInt24Cells.def"
#include "framework/ZelmCellFunctions.inc"
};

#pragma once

#include "dsp/ZelmOrvaneDspInt8Data.h"
#include "dsp/ZelmOrvaneDspInt8Params.h"
#include "framework/ZelmModelBlock.h"

class ZELM_EXPORT ZelmOrvaneDspInt8Model;
extern template class ZelmModelBlock<ZelmOrvaneDspInt8Model, ZelmOrvaneDspInt8Params, ZelmOrvaneDspInt8Data>;

/// Dynamic power of DSP slices in narrow-integer mode.
class ZELM_EXPORT ZelmOrvaneDspInt8Model final
    : public ZelmModelBlock<ZelmOrvaneDspInt8Model, ZelmOrvaneDspInt8Params, ZelmOrvaneDspInt8Data> {
public:
    static constexpr std::string_view name = "ZelmOrvaneDspInt8Model";

#define ZELM_CELL_ROWS "dsp/ZelmOrvaneDspInt8Cells.def"
#include "framework/ZelmCellFunctions.inc"
};

#pragma once

#include "dsp/ZelmOrvaneDspFp32Data.h"
#include "dsp/ZelmOrvaneDspFp32Params.h"
#include "framework/ZelmModelBlock.h"

class ZELM_EXPORT ZelmOrvaneDspFp32Model;
extern template class ZelmModelBlock<ZelmOrvaneDspFp32Model, ZelmOrvaneDspFp32Params, ZelmOrvaneDspFp32Data>;

/// Dynamic power of DSP slices in single-precision floating-point mode.
class ZELM_EXPORT ZelmOrvaneDspFp32Model final
    : public ZelmModelBlock<ZelmOrvaneDspFp32Model, ZelmOrvaneDspFp32Params, ZelmOrvaneDspFp32Data> {
public:
    static constexpr std::string_view name = "ZelmOrvaneDspFp32Model";

#define ZELM_CELL_ROWS "dsp/ZelmOrvaneDspFp32Cells.def"
#include "framework/ZelmCellFunctions.inc"
};

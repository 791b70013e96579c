#pragma once

#include "framework/ZelmParamBlock.h"

struct ZELM_EXPORT ZelmOrvaneDspFp32Cells {
    static constexpr std::string_view name = "ZelmOrvaneDspFp32Params";
#define ZELM_CELL_ROWS "dsp/ZelmOrvaneDspFp32Cells.def"
#include "framework/ZelmCellEnums.inc"
};

extern template class ZelmParamBlock<ZelmOrvaneDspFp32Cells>;

/// The cells of one group of like DSP slices in floating-point mode.
class ZELM_EXPORT ZelmOrvaneDspFp32Params final : public ZelmParamBlock<ZelmOrvaneDspFp32Cells> {};

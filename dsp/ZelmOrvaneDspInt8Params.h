#pragma once

#include "framework/ZelmParamBlock.h"

struct ZELM_EXPORT ZelmOrvaneDspInt8Cells {
    static constexpr std::string_view name = "ZelmOrvaneDspInt8Params";
#define ZELM_CELL_ROWS "dsp/ZelmOrvaneDspInt8Cells.def"
#include "framework/ZelmCellEnums.inc"
};

extern template class ZelmParamBlock<ZelmOrvaneDspInt8Cells>;

/// The cells of one group of like DSP slices in narrow-integer mode.
class ZELM_EXPORT ZelmOrvaneDspInt8Params final : public ZelmParamBlock<ZelmOrvaneDspInt8Cells> {};

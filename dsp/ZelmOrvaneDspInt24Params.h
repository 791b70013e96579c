#pragma once

#include "framework/ZelmParamBlock.h"

struct ZELM_EXPORT ZelmOrvaneDspInt24Cells {
    static constexpr std::string_view name = "ZelmOrvaneDspInt24Params";
#define ZELM_CELL_ROWS "dsp/ZelmOrvaneDspInt24Cells.def"
#include "framework/ZelmCellEnums.inc"
};

extern template class ZelmParamBlock<ZelmOrvaneDspInt24Cells>;

/// The cells of one group of like DSP slices in integer mode.
class ZELM_EXPORT ZelmOrvaneDspInt24Params final : public ZelmParamBlock<ZelmOrvaneDspInt24Cells> {};

#pragma once

#include "dsp/ZelmDspModel.h"
#include "dsp/ZelmOrvaneDspInt24Data.h"
#include "dsp/ZelmOrvaneDspInt24Params.h"

class ZELM_EXPORT ZelmOrvaneDspInt24Model;
extern template class ZelmModelBlock<ZelmOrvaneDspInt24Model, ZelmOrvaneDspInt24Params, ZelmOrvaneDspInt24Data>;

/// Dynamic power of DSP slices in integer mode.
class ZELM_EXPORT ZelmOrvaneDspInt24Model final
    : public ZelmDspModel<ZelmOrvaneDspInt24Model, ZelmOrvaneDspInt24Params, ZelmOrvaneDspInt24Data> {
public:
    static constexpr std::string_view name = "ZelmOrvaneDspInt24Model";

#define ZELM_CELL_ROWS "dsp/ZelmOrvaneDspInt24Cells.def"
#include "framework/ZelmCellFunctions.inc"

private:
    friend ZelmDspModel;
    struct Slice;
    using enum zelm::DspInt24Modes::Mode;
};

#pragma once

#include "dsp/ZelmDspModel.h"
#include "dsp/ZelmOrvaneDspFp32Data.h"
#include "dsp/ZelmOrvaneDspFp32Params.h"

class ZELM_EXPORT ZelmOrvaneDspFp32Model;
extern template class ZelmModelBlock<ZelmOrvaneDspFp32Model, ZelmOrvaneDspFp32Params, ZelmOrvaneDspFp32Data>;

/// Dynamic power of DSP slices in single-precision floating-point mode.
class ZELM_EXPORT ZelmOrvaneDspFp32Model final
    : public ZelmDspModel<ZelmOrvaneDspFp32Model, ZelmOrvaneDspFp32Params, ZelmOrvaneDspFp32Data> {
public:
    static constexpr std::string_view name = "ZelmOrvaneDspFp32Model";

#define ZELM_CELL_ROWS "dsp/ZelmOrvaneDspFp32Cells.def"
#include "framework/ZelmCellFunctions.inc"

private:
    friend ZelmDspModel;
    struct Slice;
    enum Mode : int {
        multAdd,
        multAddNofpmpipereg,
        multOnly,
        multOnlyNofpmpipereg,
        addOnly,
        b16MultAdd,
        b16MultAddNofpmpipereg,
        b16Mult,
        b16MultNofpmpipereg
    };

    // The tables know no usage level here, and have no cells of their own.
    float dynamicCurrent(Component component, Params& params, const Data& data) const;
    float offCurrent(Component component, Params& params, const Data& data) const;
};

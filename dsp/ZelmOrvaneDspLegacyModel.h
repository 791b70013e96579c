#pragma once

#include "dsp/ZelmDspModel.h"
#include "dsp/ZelmOrvaneDspLegacyData.h"
#include "dsp/ZelmOrvaneDspLegacyParams.h"

class ZELM_EXPORT ZelmOrvaneDspLegacyModel;
extern template class ZelmModelBlock<ZelmOrvaneDspLegacyModel, ZelmOrvaneDspLegacyParams, ZelmOrvaneDspLegacyData>;

/// Dynamic power of DSP slices of the older kind, with their wide XOR.
class ZELM_EXPORT ZelmOrvaneDspLegacyModel final
    : public ZelmDspModel<ZelmOrvaneDspLegacyModel, ZelmOrvaneDspLegacyParams, ZelmOrvaneDspLegacyData> {
public:
    static constexpr std::string_view name = "ZelmOrvaneDspLegacyModel";

#define ZELM_CELL_ROWS "dsp/ZelmOrvaneDspLegacyCells.def"
#include "framework/ZelmCellFunctions.inc"

private:
    friend ZelmDspModel;
    struct Slice;
    using enum zelm::DspInt24Modes::Mode;

    float componentsCurrent(Params& params, const Data& data) const;
};

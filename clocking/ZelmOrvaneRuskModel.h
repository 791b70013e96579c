#pragma once

#include "clocking/ZelmClockGenerator.h"
#include "clocking/ZelmOrvaneRuskData.h"
#include "clocking/ZelmOrvaneRuskParams.h"

class ZELM_EXPORT ZelmOrvaneRuskModel;
extern template class ZelmModelBlock<ZelmOrvaneRuskModel, ZelmOrvaneRuskParams, ZelmOrvaneRuskData>;

/// Power of a PLL of the I/O banks, which also drives the I/O PHY clock, on VCCAUX and VCCINTIO.
class ZELM_EXPORT ZelmOrvaneRuskModel final
    : public ZelmClockGenerator<ZelmOrvaneRuskModel, ZelmOrvaneRuskParams, ZelmOrvaneRuskData> {
public:
    static constexpr std::string_view name = "ZelmOrvaneRuskModel";

#define ZELM_CELL_ROWS "clocking/ZelmOrvaneRuskCells.def"
#include "framework/ZelmCellFunctions.inc"

    void pullOutputs(Params& params, const Data& data) const;

private:
    static const Output kOutputs[4];

    float outputCurrent(const Output& output, Params& params, const Data& data) const;
};

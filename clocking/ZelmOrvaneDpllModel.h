#pragma once

#include "clocking/ZelmClockGenerator.h"
#include "clocking/ZelmOrvaneDpllData.h"
#include "clocking/ZelmOrvaneDpllParams.h"

class ZELM_EXPORT ZelmOrvaneDpllModel;
extern template class ZelmModelBlock<ZelmOrvaneDpllModel, ZelmOrvaneDpllParams, ZelmOrvaneDpllData>;

/// Power of a digital PLL. The oscillator and the counters are on VCCAUX, the output drivers on VCCINT and VCCRAM.
class ZELM_EXPORT ZelmOrvaneDpllModel final
    : public ZelmClockGenerator<ZelmOrvaneDpllModel, ZelmOrvaneDpllParams, ZelmOrvaneDpllData> {
public:
    static constexpr std::string_view name = "ZelmOrvaneDpllModel";

#define ZELM_CELL_ROWS "clocking/ZelmOrvaneDpllCells.def"
#include "framework/ZelmCellFunctions.inc"

    void pullOutputs(Params& params, const Data& data) const;

private:
    static const Output kOutputs[4];

    float counterCurrent(const Output& output, Params& params, const Data& data) const;
    float driverCurrent(const Output& output, Params& params, const Data& data) const;
    double digitalPower(std::string_view rail, float volts, Params& params, const Data& data) const;
};

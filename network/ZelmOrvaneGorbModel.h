#pragma once

#include "framework/ZelmModelBlock.h"
#include "network/ZelmOrvaneGorbData.h"
#include "network/ZelmOrvaneGorbParams.h"

class ZELM_EXPORT ZelmOrvaneGorbModel;
extern template class ZelmModelBlock<ZelmOrvaneGorbModel, ZelmOrvaneGorbParams, ZelmOrvaneGorbData>;

/// Power of the hard on-chip memory: its controller, three fabric interfaces and one interface to the processing
/// system.
class ZELM_EXPORT ZelmOrvaneGorbModel final
    : public ZelmModelBlock<ZelmOrvaneGorbModel, ZelmOrvaneGorbParams, ZelmOrvaneGorbData> {
public:
    static constexpr std::string_view name = "ZelmOrvaneGorbModel";

#define ZELM_CELL_ROWS "network/ZelmOrvaneGorbCells.def"
#include "framework/ZelmCellFunctions.inc"

    void pullOutputs(Params& params, const Data& data) const;

private:
    struct Interface;
    static const Interface kFabric1;
    static const Interface kFabric2;
    static const Interface kFabric3;
    static const Interface kProcessing;

    float dynamicPower(const Interface& interface, Params& params, const Data& data) const;
    float staticPower(const Interface& interface, Params& params, const Data& data) const;
    float totalPower(const Interface& interface, Params& params, const Data& data) const;
    float memMaxBandwidth(const Interface& interface, Params& params, const Data& data) const;
    float readEfficiency(const Interface& interface, Params& params, const Data& data) const;
    float writeEfficiency(const Interface& interface, Params& params, const Data& data) const;

    float fabricMaxBandwidth(const Interface& interface, Params& params, const Data& data) const;
    float processingMaxBandwidth(const Interface& interface, Params& params, const Data& data) const;
    float efficiency(const Interface& interface, Params& params, const Data& data) const;
    float supplyRatio(Params& params, const Data& data) const;
};

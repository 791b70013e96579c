#include "framework/ZelmOrvaneSignalModel.h"

#include "framework/ZelmModelBlockImpl.h"

#include <cmath>

template class ZelmModelBlock<ZelmOrvaneSignalModel, ZelmOrvaneSignalParams, ZelmOrvaneSignalData>;

#define ZELM_MODEL ZelmOrvaneSignalModel
#define ZELM_CELL_ROWS "framework/ZelmOrvaneSignalCells.def"
#include "framework/ZelmCellBodies.inc"

void ZelmOrvaneSignalModel::pullOutputs(Params& params, const Data& data) const
{
    calculateSignalPower(params, data);
}

float ZelmOrvaneSignalModel::calculateNumNodesPerSignal(Params& params, const Data& data) const
{
    return once(params[Params::NUM_NODES_PER_SIGNAL], [&] {
        const double decades = getRoutingComplexity(params, data) / 10.0f;
        return std::pow(10.0, decades) - 1.0;
    });
}

float ZelmOrvaneSignalModel::calculateWireCapacitance(Params& params, const Data& data) const
{
    return once(params[Params::WIRE_CAPACITANCE], [&] {
        const float nodes = calculateNumNodesPerSignal(params, data);
        const float count = static_cast<float>(getSignalCount(params, data));
        const float perNode = data.findPerNodeCap(viewDriverType(params, data));
        return nodes * count * perNode;
    });
}

float ZelmOrvaneSignalModel::calculateSignalPower(Params& params, const Data& data) const
{
    return once(params[Params::SIGNAL_POWER], [&] {
        const float capacitance = calculateWireCapacitance(params, data);
        const float vccint = getVccint(params, data);
        const float toggleRate = getToggleRate(params, data);
        const float clockFreq = getClockFreq(params, data);
        return capacitance * vccint * vccint * toggleRate * clockFreq * 0.5f;
    });
}

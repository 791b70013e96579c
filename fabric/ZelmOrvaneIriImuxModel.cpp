#include "fabric/ZelmOrvaneIriImuxModel.h"

#include "fabric/ZelmInterfaceCurrent.h"
#include "framework/ZelmModelBlockImpl.h"

template class ZelmModelBlock<ZelmOrvaneIriImuxModel, ZelmOrvaneIriImuxParams, ZelmOrvaneIriImuxData>;

#define ZELM_MODEL ZelmOrvaneIriImuxModel
#define ZELM_CELL_ROWS "fabric/ZelmOrvaneIriImuxCells.def"
#include "framework/ZelmCellBodies.inc"

void ZelmOrvaneIriImuxModel::pullOutputs(Params& params, const Data& data) const
{
    calculateImuxPower(params, data);
}

float ZelmOrvaneIriImuxModel::calculateOneImuxCurrent(Params& params, const Data& data) const
{
    return once(params[Params::ONE_IMUX_CURRENT], [&] {
        const std::string_view mode = viewMode(params, data);
        const double count = data.findCurrent(mode, "COUNT");
        const float signalRate = getOpSignalRate(params, data);
        const double together = zelm::interfaceCurrent(data, mode, signalRate);
        // From nA to A, to mA.
        return count == 0.0 ? 0.0 : together * 1e-9 * 1000.0 / count;
    });
}

float ZelmOrvaneIriImuxModel::calculateImuxPower(Params& params, const Data& data) const
{
    return once(params[Params::IMUX_POWER], [&] {
        const float multiplexers = static_cast<float>(getNumImux(params, data));
        const float current = calculateOneImuxCurrent(params, data);
        const float vccint = getVccint(params, data);
        const float simulated = data.findFactor("SIM_VOLTAGE");
        const double power = multiplexers * current * vccint;
        const double ratio = zelm::ratioOrZero(vccint, simulated);
        return power * ratio;
    });
}

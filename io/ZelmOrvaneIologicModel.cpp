#include "io/ZelmOrvaneIologicModel.h"

#include "framework/ZelmModelBlockImpl.h"

template class ZelmModelBlock<ZelmOrvaneIologicModel, ZelmOrvaneIologicParams, ZelmOrvaneIologicData>;

#define ZELM_MODEL ZelmOrvaneIologicModel
#define ZELM_CELL_ROWS "io/ZelmOrvaneIologicCells.def"
#include "framework/ZelmCellBodies.inc"

void ZelmOrvaneIologicModel::pullOutputs(Params& params, const Data& data) const
{
    calculateVccIoPwr(params, data);
}

std::string_view ZelmOrvaneIologicModel::viewModeCurrDataTag(Params& params, const Data& data) const
{
    return once(params[Params::MODE_CURR_DATA_TAG], [&] { return std::string(viewMode(params, data)) + "_CURR"; });
}

float ZelmOrvaneIologicModel::calculateVccIoCurrent(Params& params, const Data& data) const
{
    return once(params[Params::VCC_IO_CURRENT], [&] {
        const float perMegahertz = data.findFinalData(viewModeCurrDataTag(params, data));
        const float frequency = getFrequency(params, data);
        return perMegahertz * frequency;
    });
}

float ZelmOrvaneIologicModel::calculateVccIoPwr(Params& params, const Data& data) const
{
    return once(params[Params::VCC_IO_PWR], [&] {
        const float vccIo = getVccIo(params, data);
        const float simVoltage = data.findSimVoltage("VCCINT_IO");
        const float current = calculateVccIoCurrent(params, data);
        // The ratio cancels the supply, so the power is that at the characterisation voltage: as in the workbook.
        return vccIo == 0.0f ? 0.0f : vccIo * (simVoltage / vccIo) * current;
    });
}

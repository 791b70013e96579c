#include "hardblocks/ZelmOrvaneSdfecModel.h"

#include "framework/ZelmModelBlockImpl.h"
#include "hardblocks/ZelmHardBlockFormulas.h"

template class ZelmModelBlock<ZelmOrvaneSdfecModel, ZelmOrvaneSdfecParams, ZelmOrvaneSdfecData>;

#define ZELM_MODEL ZelmOrvaneSdfecModel
#define ZELM_CELL_ROWS "hardblocks/ZelmOrvaneSdfecCells.def"
#include "framework/ZelmCellBodies.inc"

void ZelmOrvaneSdfecModel::pullOutputs(Params& params, const Data& data) const
{
    calculatePower(params, data);
}

float ZelmOrvaneSdfecModel::calculateCurrentFromSpec(Params& params, const Data& data) const
{
    return once(params[Params::CURRENT_FROM_SPEC], [&] {
        const float current = data.findDynamicCurrents(viewModes(params, data));
        return ZelmHelperUtils::IFERROR(current, 0) / 0.78;
    });
}

float ZelmOrvaneSdfecModel::calculatePower(Params& params, const Data& data) const
{
    return once(params[Params::POWER], [&] {
        const float current = calculateCurrentFromSpec(params, data);
        const float datarate = getDatarate(params, data);
        return zelm::currentPower(current, *this, params, data) * datarate;
    });
}

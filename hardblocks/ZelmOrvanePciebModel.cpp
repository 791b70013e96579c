#include "hardblocks/ZelmOrvanePciebModel.h"

#include "framework/ZelmModelBlockImpl.h"
#include "hardblocks/ZelmHardBlockFormulas.h"

template class ZelmModelBlock<ZelmOrvanePciebModel, ZelmOrvanePciebParams, ZelmOrvanePciebData>;

#define ZELM_MODEL ZelmOrvanePciebModel
#define ZELM_CELL_ROWS "hardblocks/ZelmOrvanePciebCells.def"
#include "framework/ZelmCellBodies.inc"

void ZelmOrvanePciebModel::pullOutputs(Params& params, const Data& data) const
{
    calculatePower(params, data);
}

std::string_view ZelmOrvanePciebModel::viewDataTag(Params& params, const Data& data) const
{
    return once(params[Params::DATA_TAG], [&] { return zelm::linkTag(*this, params, data); });
}

float ZelmOrvanePciebModel::calculateCurrent(Params& params, const Data& data) const
{
    return once(params[Params::CURRENT],
                [&] { return data.findDynamicCurrents(viewDataTag(params, data), "AVG_CURRENT_A"); });
}

float ZelmOrvanePciebModel::calculatePower(Params& params, const Data& data) const
{
    return once(params[Params::POWER],
                [&] { return zelm::currentPower(calculateCurrent(params, data), *this, params, data); });
}

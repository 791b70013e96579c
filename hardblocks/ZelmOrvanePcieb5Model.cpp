#include "hardblocks/ZelmOrvanePcieb5Model.h"

#include "framework/ZelmModelBlockImpl.h"
#include "hardblocks/ZelmHardBlockFormulas.h"

template class ZelmModelBlock<ZelmOrvanePcieb5Model, ZelmOrvanePcieb5Params, ZelmOrvanePcieb5Data>;

#define ZELM_MODEL ZelmOrvanePcieb5Model
#define ZELM_CELL_ROWS "hardblocks/ZelmOrvanePcieb5Cells.def"
#include "framework/ZelmCellBodies.inc"

void ZelmOrvanePcieb5Model::pullOutputs(Params& params, const Data& data) const
{
    calculatePower(params, data);
}

std::string_view ZelmOrvanePcieb5Model::viewDataTag(Params& params, const Data& data) const
{
    return once(params[Params::DATA_TAG], [&] { return zelm::linkTag(*this, params, data); });
}

float ZelmOrvanePcieb5Model::calculateCurrent(Params& params, const Data& data) const
{
    return once(params[Params::CURRENT],
                [&] { return data.findDynamicCurrents(viewDataTag(params, data), "AVG_CURRENT_A"); });
}

float ZelmOrvanePcieb5Model::calculatePower(Params& params, const Data& data) const
{
    return once(params[Params::POWER],
                [&] { return zelm::currentPower(calculateCurrent(params, data), *this, params, data); });
}

#include "hardblocks/ZelmOrvaneIlknModel.h"

#include "framework/ZelmModelBlockImpl.h"
#include "hardblocks/ZelmHardBlockFormulas.h"

template class ZelmModelBlock<ZelmOrvaneIlknModel, ZelmOrvaneIlknParams, ZelmOrvaneIlknData>;

#define ZELM_MODEL ZelmOrvaneIlknModel
#define ZELM_CELL_ROWS "hardblocks/ZelmOrvaneIlknCells.def"
#include "framework/ZelmCellBodies.inc"

void ZelmOrvaneIlknModel::pullOutputs(Params& params, const Data& data) const
{
    calculateVccintPower(params, data);
}

std::string_view ZelmOrvaneIlknModel::viewModeKeystr(Params& params, const Data& data) const
{
    return once(params[Params::MODE_KEYSTR], [&] { return zelm::modeKey(*this, params, data); });
}

float ZelmOrvaneIlknModel::calculateVccintPowerCalc(Params& params, const Data& data) const
{
    return once(params[Params::VCCINT_POWER_CALC],
                [&] { return zelm::modePower(*this, params, data, getNumIlkn(params, data)); });
}

float ZelmOrvaneIlknModel::calculateVccintPower(Params& params, const Data& data) const
{
    return once(params[Params::VCCINT_POWER],
                [&] { return zelm::notBelowZero(calculateVccintPowerCalc(params, data)); });
}

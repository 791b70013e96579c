#include "hardblocks/ZelmOrvaneJorlModel.h"

#include "framework/ZelmModelBlockImpl.h"
#include "hardblocks/ZelmHardBlockFormulas.h"

template class ZelmModelBlock<ZelmOrvaneJorlModel, ZelmOrvaneJorlParams, ZelmOrvaneJorlData>;

#define ZELM_MODEL ZelmOrvaneJorlModel
#define ZELM_CELL_ROWS "hardblocks/ZelmOrvaneJorlCells.def"
#include "framework/ZelmCellBodies.inc"

void ZelmOrvaneJorlModel::pullOutputs(Params& params, const Data& data) const
{
    calculateVccintPower(params, data);
}

std::string_view ZelmOrvaneJorlModel::viewModeKeystr(Params& params, const Data& data) const
{
    return once(params[Params::MODE_KEYSTR], [&] { return zelm::modeKey(*this, params, data); });
}

float ZelmOrvaneJorlModel::calculateVccintPowerCalc(Params& params, const Data& data) const
{
    return once(params[Params::VCCINT_POWER_CALC],
                [&] { return zelm::modePower(*this, params, data, getNumJorl(params, data)); });
}

float ZelmOrvaneJorlModel::calculateVccintPower(Params& params, const Data& data) const
{
    return once(params[Params::VCCINT_POWER],
                [&] { return zelm::notBelowZero(calculateVccintPowerCalc(params, data)); });
}

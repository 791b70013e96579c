#include "hardblocks/ZelmOrvaneHscModel.h"

#include "framework/ZelmModelBlockImpl.h"
#include "hardblocks/ZelmHardBlockFormulas.h"

template class ZelmModelBlock<ZelmOrvaneHscModel, ZelmOrvaneHscParams, ZelmOrvaneHscData>;

#define ZELM_MODEL ZelmOrvaneHscModel
#define ZELM_CELL_ROWS "hardblocks/ZelmOrvaneHscCells.def"
#include "framework/ZelmCellBodies.inc"

void ZelmOrvaneHscModel::pullOutputs(Params& params, const Data& data) const
{
    calculateVccintPower(params, data);
}

float ZelmOrvaneHscModel::calculateVccintPowerCalc(Params& params, const Data& data) const
{
    return once(params[Params::VCCINT_POWER_CALC], [&] {
        const std::string_view mode = viewMode(params, data);
        const float normal = data.findNormalModePower("VALUE");
        const float slow = data.findSlowModePower("VALUE");
        const float vccint = getVccint(params, data);
        const int count = getNumHsc(params, data);
        // -1.0 marks an unknown mode; the floor of VCCINT_POWER makes it 0.
        const float power = mode == "Normal" ? normal : mode == "Slow" ? slow : -1.0f;
        return zelm::squaredToSupply(power, vccint, count);
    });
}

float ZelmOrvaneHscModel::calculateVccintPower(Params& params, const Data& data) const
{
    return once(params[Params::VCCINT_POWER],
                [&] { return zelm::notBelowZero(calculateVccintPowerCalc(params, data)); });
}

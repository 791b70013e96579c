#include "hardblocks/ZelmOrvaneMulmModel.h"

#include "framework/ZelmModelBlockImpl.h"
#include "hardblocks/ZelmHardBlockFormulas.h"

template class ZelmModelBlock<ZelmOrvaneMulmModel, ZelmOrvaneMulmParams, ZelmOrvaneMulmData>;

#define ZELM_MODEL ZelmOrvaneMulmModel
#define ZELM_CELL_ROWS "hardblocks/ZelmOrvaneMulmCells.def"
#include "framework/ZelmCellBodies.inc"

void ZelmOrvaneMulmModel::pullOutputs(Params& params, const Data& data) const
{
    calculateVccintPower(params, data);
}

std::string_view ZelmOrvaneMulmModel::viewPowerDataTag(Params& params, const Data& data) const
{
    return once(params[Params::POWER_DATA_TAG], [&] {
        const std::string_view mode = viewMulmMode(params, data);
        const int width = getLinkWidth(params, data);
        const std::string_view speed = viewLinkSpeed(params, data);
        return std::string(mode).append("_CH").append(std::to_string(width)).append("_").append(speed);
    });
}

std::string_view ZelmOrvaneMulmModel::viewInvalidConfig(Params& params, const Data& data) const
{
    return once(params[Params::INVALID_CONFIG], [&] {
        return ZelmHelperUtils::ISERROR(data.findPowerData(viewPowerDataTag(params, data))) ? "YES" : "NO";
    });
}

float ZelmOrvaneMulmModel::calculateVccintPower(Params& params, const Data& data) const
{
    return once(params[Params::VCCINT_POWER], [&] {
        const bool invalid = viewInvalidConfig(params, data) == "YES";
        const float row = data.findPowerData(viewPowerDataTag(params, data));
        const float vccint = getVccint(params, data);
        const float reference = data.findFactors("VCCINT_SIM");
        return (invalid ? 0.0f : row) * zelm::voltageFactor(vccint, reference, zelm::powerOverVoltage);
    });
}

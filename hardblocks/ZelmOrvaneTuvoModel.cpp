#include "hardblocks/ZelmOrvaneTuvoModel.h"

#include "framework/ZelmModelBlockImpl.h"

template class ZelmModelBlock<ZelmOrvaneTuvoModel, ZelmOrvaneTuvoParams, ZelmOrvaneTuvoData>;

#define ZELM_MODEL ZelmOrvaneTuvoModel
#define ZELM_CELL_ROWS "hardblocks/ZelmOrvaneTuvoCells.def"
#include "framework/ZelmCellBodies.inc"

void ZelmOrvaneTuvoModel::pullOutputs(Params& params, const Data& data) const
{
    calculatePower(params, data);
}

std::string_view ZelmOrvaneTuvoModel::viewTuvoConfiguration(Params& params, const Data& data) const
{
    return once(params[Params::TUVO_CONFIGURATION], [&] {
        const bool bypassed = viewTranscodeBypass(params, data) == "YES";
        const bool corrects = viewFecUsed(params, data) == "YES";
        const std::string_view rate = viewPortDataRate(params, data);
        return std::string(bypassed ? "FEC_ONLY_" : corrects ? "FEC_" : "NO_FEC_").append(rate);
    });
}

std::string_view ZelmOrvaneTuvoModel::viewInvalidConfig(Params& params, const Data& data) const
{
    return once(params[Params::INVALID_CONFIG], [&] {
        const bool bypassed = viewTranscodeBypass(params, data) == "YES";
        const bool corrects = viewFecUsed(params, data) == "YES";
        const float row = data.findConfigPwrData(viewTuvoConfiguration(params, data), viewActivity(params, data));
        // Nothing is left to do without error correction on the bypass, whatever the table holds.
        return (bypassed && !corrects) || ZelmHelperUtils::ISERROR(row) ? "YES" : "NO";
    });
}

float ZelmOrvaneTuvoModel::calculatePower(Params& params, const Data& data) const
{
    return once(params[Params::POWER], [&] {
        const bool invalid = viewInvalidConfig(params, data) == "YES";
        const float row = data.findConfigPwrData(viewTuvoConfiguration(params, data), viewActivity(params, data));
        const float ratio = zelm::ratioOrZero(getVccint(params, data), data.findSimVoltage("VCCINT"));
        return (invalid ? 0.0f : row) * (ratio * ratio);
    });
}

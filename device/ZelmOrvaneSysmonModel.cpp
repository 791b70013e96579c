#include "device/ZelmOrvaneSysmonModel.h"

#include "framework/ZelmModelBlockImpl.h"

template class ZelmModelBlock<ZelmOrvaneSysmonModel, ZelmOrvaneSysmonParams, ZelmOrvaneSysmonData>;

#define ZELM_MODEL ZelmOrvaneSysmonModel
#define ZELM_CELL_ROWS "device/ZelmOrvaneSysmonCells.def"
#include "framework/ZelmCellBodies.inc"

namespace {

// 0 for a rail that is off, and for a characterisation voltage of 0. The quotient is single precision, its square
// double.
double squareLaw(float volts, float reference)
{
    if (reference == 0.0f || !(volts > 0.0f))
        return 0.0;
    const double ratio = volts / reference;
    return ratio * ratio;
}

float characterisationVolts(const ZelmOrvaneSysmonData& data)
{
    return data.findSimConditions("PSIM_VOLTAGE");
}

float satellitePower(const ZelmOrvaneSysmonData& data)
{
    const float dynamic = data.findSysmonData("SATELLITE_DYNAMIC");
    const float leakage = data.findSysmonData("SATELLITE_LEAKAGE");
    return dynamic + leakage;
}

} // namespace

void ZelmOrvaneSysmonModel::pullOutputs(Params& params, const Data& data) const
{
    calculateVccpslpScaling(params, data);
    calculateVccpsfpScaling(params, data);
    calculateVccsocScaling(params, data);
    calculateVccharlScaling(params, data);
    calculateVccauxharlScaling(params, data);
    calculateVccauxsmonScaling(params, data);
    calculateVccauxScaling(params, data);
    calculateTotalStaticPower(params, data);
    calculateVccharlPower(params, data);
    calculateVccpslpPower(params, data);
    calculateVccpsfpPower(params, data);
    calculateVccsocPower(params, data);
    calculateVccauxharlPower(params, data);
    calculateVccauxsysmonPower(params, data);
    calculateVccauxPower(params, data);
}

// ---- Counts ----

int ZelmOrvaneSysmonModel::count(std::string_view key, Params& params, const Data& data) const
{
    return zelm::truncate(data.findDeviceData(viewDevice(params, data), key));
}

int ZelmOrvaneSysmonModel::calculateNumSatellite(Params& params, const Data& data) const
{
    return once(params[Params::NUM_SATELLITE], [&] { return count("NUM_SAT", params, data); });
}

int ZelmOrvaneSysmonModel::calculateNumSlices(Params& params, const Data& data) const
{
    return once(params[Params::NUM_SLICES], [&] { return count("SLICE_COUNT", params, data); });
}

int ZelmOrvaneSysmonModel::calculateNumDecommissionedSats(Params& params, const Data& data) const
{
    return once(params[Params::NUM_DECOMMISSIONED_SATS], [&] { return count("DECOMMISSIONED_SATS", params, data); });
}

int ZelmOrvaneSysmonModel::calculateAnalogPower(Params& params, const Data& data) const
{
    return once(params[Params::ANALOG_POWER], [&] { return count("AVG_SATELLITE_ANALOG_POWER", params, data); });
}

// ---- Scaling ----

float ZelmOrvaneSysmonModel::calculateVccpslpScaling(Params& params, const Data& data) const
{
    return once(params[Params::VCCPSLP_SCALING],
                [&] { return squareLaw(getVccpslp(params, data), characterisationVolts(data)); });
}

float ZelmOrvaneSysmonModel::calculateVccpsfpScaling(Params& params, const Data& data) const
{
    return once(params[Params::VCCPSFP_SCALING],
                [&] { return squareLaw(getVccpsfp(params, data), characterisationVolts(data)); });
}

float ZelmOrvaneSysmonModel::calculateVccsocScaling(Params& params, const Data& data) const
{
    return once(params[Params::VCCSOC_SCALING],
                [&] { return squareLaw(getVccsoc(params, data), characterisationVolts(data)); });
}

float ZelmOrvaneSysmonModel::calculateVccharlScaling(Params& params, const Data& data) const
{
    return once(params[Params::VCCHARL_SCALING],
                [&] { return squareLaw(getVccharl(params, data), characterisationVolts(data)); });
}

// The three auxiliary rails feed through regulators: their voltages influence nothing and stay unread.

float ZelmOrvaneSysmonModel::calculateVccauxharlScaling(Params& params, const Data&) const
{
    return once(params[Params::VCCAUXHARL_SCALING], [] { return 1.0f; });
}

float ZelmOrvaneSysmonModel::calculateVccauxsmonScaling(Params& params, const Data&) const
{
    return once(params[Params::VCCAUXSMON_SCALING], [] { return 1.0f; });
}

float ZelmOrvaneSysmonModel::calculateVccauxScaling(Params& params, const Data&) const
{
    return once(params[Params::VCCAUX_SCALING], [] { return 1.0f; });
}

// ---- Powers, without scaling ----

float ZelmOrvaneSysmonModel::calculateVccpslpPower(Params& params, const Data& data) const
{
    return once(params[Params::VCCPSLP_POWER], [&] { return satellitePower(data); });
}

float ZelmOrvaneSysmonModel::calculateVccpsfpPower(Params& params, const Data& data) const
{
    return once(params[Params::VCCPSFP_POWER], [&] { return satellitePower(data); });
}

float ZelmOrvaneSysmonModel::calculateVccharlPower(Params& params, const Data& data) const
{
    return once(params[Params::VCCHARL_POWER], [&] {
        const float rootDynamic = data.findSysmonData("ROOT_DYNAMIC");
        const float dynamic = data.findSysmonData("SATELLITE_DYNAMIC");
        const float rootLeakage = data.findSysmonData("ROOT_LEAKAGE");
        const float leakage = data.findSysmonData("SATELLITE_LEAKAGE");
        const float slices = static_cast<float>(calculateNumSlices(params, data));
        return (rootDynamic + 2.0f * dynamic + rootLeakage + 2.0f * leakage) * slices;
    });
}

int ZelmOrvaneSysmonModel::fabricSatellites(Params& params, const Data& data) const
{
    const int satellites = calculateNumSatellite(params, data);
    const int slices = calculateNumSlices(params, data);
    return zelm::wrapSubtract(zelm::wrapSubtract(satellites, 3), slices);
}

float ZelmOrvaneSysmonModel::calculateVccsocPower(Params& params, const Data& data) const
{
    return once(params[Params::VCCSOC_POWER], [&] {
        const float power = satellitePower(data);
        return power * static_cast<float>(fabricSatellites(params, data));
    });
}

float ZelmOrvaneSysmonModel::calculateVccauxharlPower(Params& params, const Data& data) const
{
    return once(params[Params::VCCAUXHARL_POWER], [&] {
        const float root = data.findSysmonData("ROOT_STATIC_FROM_VCCAUX_HARL");
        return root * static_cast<float>(calculateNumSlices(params, data));
    });
}

float ZelmOrvaneSysmonModel::calculateVccauxsysmonPower(Params& params, const Data& data) const
{
    return once(params[Params::VCCAUXSYSMON_POWER], [&] {
        const float root = data.findSysmonData("ROOT_STATIC_FROM_VCCUAX_SYSMON"); // the key's letters are the file's
        const float slices = static_cast<float>(calculateNumSlices(params, data));
        const float analog = static_cast<float>(calculateAnalogPower(params, data));
        return root * slices + analog;
    });
}

float ZelmOrvaneSysmonModel::calculateVccauxPower(Params& params, const Data& data) const
{
    return once(params[Params::VCCAUX_POWER], [&] {
        // Negative on a device with few satellites; results must match the characterisation workbook.
        const int decommissioned = calculateNumDecommissionedSats(params, data);
        const int satellites = zelm::wrapSubtract(fabricSatellites(params, data), decommissioned);
        const int analog = calculateAnalogPower(params, data);
        return static_cast<float>(zelm::wrapMultiply(satellites, analog));
    });
}

float ZelmOrvaneSysmonModel::calculateTotalStaticPower(Params& params, const Data& data) const
{
    return once(params[Params::TOTAL_STATIC_POWER], [&] {
        const float harl = calculateVccharlPower(params, data) * calculateVccharlScaling(params, data);
        const float pslp = calculateVccpslpPower(params, data) * calculateVccpslpScaling(params, data);
        const float psfp = calculateVccpsfpPower(params, data) * calculateVccpsfpScaling(params, data);
        const float soc = calculateVccsocPower(params, data) * calculateVccsocScaling(params, data);
        const float auxharl = calculateVccauxharlPower(params, data) * calculateVccauxharlScaling(params, data);
        const float auxsmon = calculateVccauxsysmonPower(params, data) * calculateVccauxsmonScaling(params, data);
        const float aux = calculateVccauxPower(params, data) * calculateVccauxScaling(params, data);
        return harl + pslp + psfp + soc + auxharl + auxsmon + aux;
    });
}

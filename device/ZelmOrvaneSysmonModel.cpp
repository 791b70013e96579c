#include "device/ZelmOrvaneSysmonModel.h"

#include "framework/ZelmModelBlockImpl.h"

#define ZELM_MODEL ZelmOrvaneSysmonModel
#define ZELM_CELL_ROWS "device/ZelmOrvaneSysmonCells.def"
#define ZELM_TABLE_ROWS "device/ZelmOrvaneSysmonTables.def"

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

} // namespace

struct ZelmOrvaneSysmonModel::Sheet : zelm::Sheet<ZelmOrvaneSysmonModel> {
#include "framework/ZelmAccessors.inc"

    void pullOutputs() const
    {
        VccpslpScaling();
        VccpsfpScaling();
        VccsocScaling();
        VccharlScaling();
        VccauxharlScaling();
        VccauxsmonScaling();
        VccauxScaling();
        TotalStaticPower();
        VccharlPower();
        VccpslpPower();
        VccpsfpPower();
        VccsocPower();
        VccauxharlPower();
        VccauxsysmonPower();
        VccauxPower();
    }

    // ---- Counts ----

    int count(const Key& key) const
    {
        return zelm::truncate(findDeviceData(Device(), key));
    }

    int computeNumSatellite() const
    {
        return count("NUM_SAT");
    }

    int computeNumSlices() const
    {
        return count("SLICE_COUNT");
    }

    int computeNumDecommissionedSats() const
    {
        return count("DECOMMISSIONED_SATS");
    }

    int computeAnalogPower() const
    {
        return count("AVG_SATELLITE_ANALOG_POWER");
    }

    // ---- Scaling ----

    double scaling(float volts) const
    {
        return squareLaw(volts, findSimConditions("PSIM_VOLTAGE"));
    }

    double computeVccpslpScaling() const
    {
        return scaling(Vccpslp());
    }

    double computeVccpsfpScaling() const
    {
        return scaling(Vccpsfp());
    }

    double computeVccsocScaling() const
    {
        return scaling(Vccsoc());
    }

    double computeVccharlScaling() const
    {
        return scaling(Vccharl());
    }

    // The three auxiliary rails feed through regulators: their voltages influence nothing and stay unread.

    float computeVccauxharlScaling() const
    {
        return 1.0f;
    }

    float computeVccauxsmonScaling() const
    {
        return 1.0f;
    }

    float computeVccauxScaling() const
    {
        return 1.0f;
    }

    // ---- Powers, without scaling ----

    float satellitePower() const
    {
        const float dynamic = findSysmonData("SATELLITE_DYNAMIC");
        const float leakage = findSysmonData("SATELLITE_LEAKAGE");
        return dynamic + leakage;
    }

    float computeVccpslpPower() const
    {
        return satellitePower();
    }

    float computeVccpsfpPower() const
    {
        return satellitePower();
    }

    float computeVccharlPower() const
    {
        const float rootDynamic = findSysmonData("ROOT_DYNAMIC");
        const float dynamic = findSysmonData("SATELLITE_DYNAMIC");
        const float rootLeakage = findSysmonData("ROOT_LEAKAGE");
        const float leakage = findSysmonData("SATELLITE_LEAKAGE");
        const float slices = static_cast<float>(NumSlices());
        return (rootDynamic + 2.0f * dynamic + rootLeakage + 2.0f * leakage) * slices;
    }

    int fabricSatellites() const
    {
        const int satellites = NumSatellite();
        const int slices = NumSlices();
        return zelm::wrapSubtract(zelm::wrapSubtract(satellites, 3), slices);
    }

    float computeVccsocPower() const
    {
        const float power = satellitePower();
        return power * static_cast<float>(fabricSatellites());
    }

    float computeVccauxharlPower() const
    {
        const float root = findSysmonData("ROOT_STATIC_FROM_VCCAUX_HARL");
        return root * static_cast<float>(NumSlices());
    }

    float computeVccauxsysmonPower() const
    {
        const float root = findSysmonData("ROOT_STATIC_FROM_VCCUAX_SYSMON"); // the key's letters are the file's
        const float slices = static_cast<float>(NumSlices());
        const float analog = static_cast<float>(AnalogPower());
        return root * slices + analog;
    }

    float computeVccauxPower() const
    {
        // Negative on a device with few satellites; results must match the characterisation workbook.
        const int decommissioned = NumDecommissionedSats();
        const int satellites = zelm::wrapSubtract(fabricSatellites(), decommissioned);
        const int analog = AnalogPower();
        return static_cast<float>(zelm::wrapMultiply(satellites, analog));
    }

    float computeTotalStaticPower() const
    {
        const float harl = VccharlPower() * VccharlScaling();
        const float pslp = VccpslpPower() * VccpslpScaling();
        const float psfp = VccpsfpPower() * VccpsfpScaling();
        const float soc = VccsocPower() * VccsocScaling();
        const float auxharl = VccauxharlPower() * VccauxharlScaling();
        const float auxsmon = VccauxsysmonPower() * VccauxsmonScaling();
        const float aux = VccauxPower() * VccauxScaling();
        return harl + pslp + psfp + soc + auxharl + auxsmon + aux;
    }
};

#include "framework/ZelmModelBodies.inc"

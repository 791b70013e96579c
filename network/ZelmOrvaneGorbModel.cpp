#include "network/ZelmOrvaneGorbModel.h"

#include "framework/ZelmModelBlockImpl.h"

#include <cmath>

#define ZELM_MODEL ZelmOrvaneGorbModel
#define ZELM_CELL_ROWS "network/ZelmOrvaneGorbCells.def"
#define ZELM_TABLE_ROWS "network/ZelmOrvaneGorbTables.def"

namespace {

using Params = ZelmOrvaneGorbParams;
using zelm::Key;

// An interface to the memory with all that sets it apart.
struct Interface {
    Params::FloatEnum frequency;
    Params::IntEnum width; // of a fabric interface, the other's is fixed
    Params::IntEnum banks;
    Params::IntEnum usageModes;
    Params::IntEnum bandwidth;
    Key staticItem;
    Params::FloatEnum maxBandwidth;
    Params::FloatEnum readEfficiency;
    Params::FloatEnum writeEfficiency;
    Params::FloatEnum dynamicPower;
    Params::FloatEnum staticPower;
    Params::FloatEnum totalPower;
};

constexpr Interface kFabric1{.frequency = Params::PL_INTERFACE_1_INTF_FREQ,
                             .width = Params::PL_INTERFACE_1_INTF_WIDTH,
                             .banks = Params::PL_INTERFACE_1_NO_OF_MEM_BANKS,
                             .usageModes = Params::PL_INTERFACE_1_USAGE_MODES,
                             .bandwidth = Params::PL_INTERFACE_1_USER_INTERFACE_BANDWIDTH,
                             .staticItem = "OCM_MEM_STATIC_VCCINT_PSLP",
                             .maxBandwidth = Params::PL_INTERFACE_1_MEM_MAX_BANDWIDTH,
                             .readEfficiency = Params::PL_INTERFACE_1_READ_EFFICIENCY,
                             .writeEfficiency = Params::PL_INTERFACE_1_WRITE_EFFICIENCY,
                             .dynamicPower = Params::PL_INTERFACE_1_DYNAMIC_POWER,
                             .staticPower = Params::PL_INTERFACE_1_STATIC_POWER,
                             .totalPower = Params::PL_INTERFACE_1_TOTAL_POWER};
constexpr Interface kFabric2{.frequency = Params::PL_INTERFACE_2_INTF_FREQ,
                             .width = Params::PL_INTERFACE_2_INTF_WIDTH,
                             .banks = Params::PL_INTERFACE_2_NO_OF_MEM_BANKS,
                             .usageModes = Params::PL_INTERFACE_2_USAGE_MODES,
                             .bandwidth = Params::PL_INTERFACE_2_USER_INTERFACE_BANDWIDTH,
                             .staticItem = "OCM_MEM_STATIC_VCCINT_PSLP",
                             .maxBandwidth = Params::PL_INTERFACE_2_MEM_MAX_BANDWIDTH,
                             .readEfficiency = Params::PL_INTERFACE_2_READ_EFFICIENCY,
                             .writeEfficiency = Params::PL_INTERFACE_2_WRITE_EFFICIENCY,
                             .dynamicPower = Params::PL_INTERFACE_2_DYNAMIC_POWER,
                             .staticPower = Params::PL_INTERFACE_2_STATIC_POWER,
                             .totalPower = Params::PL_INTERFACE_2_TOTAL_POWER};
constexpr Interface kFabric3{.frequency = Params::PL_INTERFACE_3_INTF_FREQ,
                             .width = Params::PL_INTERFACE_3_INTF_WIDTH,
                             .banks = Params::PL_INTERFACE_3_NO_OF_MEM_BANKS,
                             .usageModes = Params::PL_INTERFACE_3_USAGE_MODES,
                             .bandwidth = Params::PL_INTERFACE_3_USER_INTERFACE_BANDWIDTH,
                             .staticItem = "OCM_MEM_STATIC_VCCINT_PSLP",
                             .maxBandwidth = Params::PL_INTERFACE_3_MEM_MAX_BANDWIDTH,
                             .readEfficiency = Params::PL_INTERFACE_3_READ_EFFICIENCY,
                             .writeEfficiency = Params::PL_INTERFACE_3_WRITE_EFFICIENCY,
                             .dynamicPower = Params::PL_INTERFACE_3_DYNAMIC_POWER,
                             .staticPower = Params::PL_INTERFACE_3_STATIC_POWER,
                             .totalPower = Params::PL_INTERFACE_3_TOTAL_POWER};
// The static power of this interface is taken from the controller's item, not the memory's.
constexpr Interface kProcessing{.frequency = Params::MEM_FREQ,
                                .width = Params::LastInt,
                                .banks = Params::PS_INTERFACE_NO_OF_MEM_BANKS,
                                .usageModes = Params::PS_INTERFACE_USAGE_MODES,
                                .bandwidth = Params::PS_INTERFACE_USER_BANDWIDTH,
                                .staticItem = "OCM_CONTROLLER_STATIC_VCCINT_PSLP",
                                .maxBandwidth = Params::PS_INTERFACE_MEM_MAX_BANDWIDTH,
                                .readEfficiency = Params::PS_INTERFACE_READ_EFFICIENCY,
                                .writeEfficiency = Params::PS_INTERFACE_WRITE_EFFICIENCY,
                                .dynamicPower = Params::PS_INTERFACE_DYNAMIC_POWER,
                                .staticPower = Params::PS_INTERFACE_STATIC_POWER,
                                .totalPower = Params::PS_INTERFACE_TOTAL_POWER};

} // namespace

struct ZelmOrvaneGorbModel::Sheet : zelm::Sheet<ZelmOrvaneGorbModel> {
#include "framework/ZelmAccessors.inc"

    void pullOutputs() const
    {
        DynamicVoltageScaling();
        LeakageVoltageScaling();
        OcmControllerDynamicPower();
        OcmControllerStaticPower();
        OcmControllerTotalPower();
        PlInterface1DynamicPower();
        PlInterface1StaticPower();
        PlInterface1TotalPower();
        PlInterface2DynamicPower();
        PlInterface2StaticPower();
        PlInterface2TotalPower();
        PlInterface3DynamicPower();
        PlInterface3StaticPower();
        PlInterface3TotalPower();
        PsInterfaceDynamicPower();
        PsInterfaceStaticPower();
        PsInterfaceTotalPower();
        GorbTopDynamicPower();
        GorbTopStaticPower();
    }

    float supplyRatio() const
    {
        const float supply = PsupplyVoltage();
        const float simVoltage = findSimConditions("PSIM_VOLTAGE");
        return zelm::ratioOrZero(supply, simVoltage);
    }

    double computeDynamicVoltageScaling() const
    {
        const double ratio = supplyRatio();
        return findSimConditions("PSIM_VOLTAGE") > 0.0f ? std::pow(ratio, 2.33) : 0.0;
    }

    double computeLeakageVoltageScaling() const
    {
        const double ratio = supplyRatio();
        return findSimConditions("PSIM_VOLTAGE") > 0.0f ? std::pow(ratio, 1.88) : 0.0;
    }

    // The controller's powers hold for every supply: they aren't scaled.
    float computeOcmControllerDynamicPower() const
    {
        const float perMegahertz = findGorbPowerParam("OCM_CONTROLLER_DYNAMIC_VCCINT_PSLP");
        const float memFreq = MemFreq();
        return perMegahertz * memFreq;
    }

    float computeOcmControllerStaticPower() const
    {
        return findGorbPowerParam("OCM_CONTROLLER_STATIC_VCCINT_PSLP");
    }

    float computeOcmControllerTotalPower() const
    {
        const float dynamicPart = OcmControllerDynamicPower();
        const float staticPart = OcmControllerStaticPower();
        return dynamicPart + staticPart;
    }

    float maxBandwidth(const Interface& interface) const
    {
        if (interface.width == Params::LastInt)
            return value(interface.frequency) * 256.0f * 0.125f;
        const float width = static_cast<float>(value(interface.width));
        const float frequency = value(interface.frequency);
        return (width * frequency + width * frequency) * 0.125f; // both directions, in bytes
    }

    // Each direction has half of the user's bandwidth.
    float efficiency(const Interface& interface) const
    {
        const float bandwidth = static_cast<float>(zelm::wrapMultiply(value(interface.bandwidth), 2));
        const float maxBandwidth = value(interface.maxBandwidth);
        return maxBandwidth == 0.0f ? 0.0f : 0.5f * (bandwidth / maxBandwidth);
    }

    float readEfficiency(const Interface& interface) const
    {
        return efficiency(interface);
    }

    float writeEfficiency(const Interface& interface) const
    {
        return efficiency(interface);
    }

    float staticPower(const Interface& interface) const
    {
        const float scaling = LeakageVoltageScaling();
        const float banks = static_cast<float>(value(interface.banks));
        const float perArray = findGorbPowerParam(interface.staticItem);
        return scaling * (banks * perArray * 4.0f);
    }

    float dynamicPower(const Interface& interface) const
    {
        const int usageModes = value(interface.usageModes);
        const float perWrite = findGorbPowerParam("OCM_MEM_WRITE_DYNAMIC_VCCINT_PSLP");
        const float write = value(interface.writeEfficiency);
        const float read = value(interface.readEfficiency);
        const float perRead = findGorbPowerParam("OCM_MEM_READ_DYNAMIC_VCCINT_PSLP");
        const float frequency = value(interface.frequency);
        const float banks = static_cast<float>(value(interface.banks));
        const float scaling = DynamicVoltageScaling();
        const float power = usageModes == 1 ? 0.0f : (perWrite * write + read * perRead) * frequency * 4.0f * banks;
        return power * scaling;
    }

    float totalPower(const Interface& interface) const
    {
        const float dynamicPart = value(interface.dynamicPower);
        const float staticPart = value(interface.staticPower);
        return dynamicPart + staticPart;
    }

    float computeGorbTopDynamicPower() const
    {
        const float fabric1 = PlInterface1DynamicPower();
        const float fabric2 = PlInterface2DynamicPower();
        const float fabric3 = PlInterface3DynamicPower();
        const float processing = PsInterfaceDynamicPower();
        const float controller = OcmControllerDynamicPower();
        return fabric1 + fabric2 + fabric3 + processing + controller;
    }

    float computeGorbTopStaticPower() const
    {
        const float fabric1 = PlInterface1StaticPower();
        const float fabric2 = PlInterface2StaticPower();
        const float fabric3 = PlInterface3StaticPower();
        const float processing = PsInterfaceStaticPower();
        const float controller = OcmControllerStaticPower();
        return fabric1 + fabric2 + fabric3 + processing + controller;
    }
};

#include "framework/ZelmModelBodies.inc"

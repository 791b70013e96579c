#include "network/ZelmOrvaneGorbModel.h"

#include "framework/ZelmModelBlockImpl.h"

#include <cmath>

template class ZelmModelBlock<ZelmOrvaneGorbModel, ZelmOrvaneGorbParams, ZelmOrvaneGorbData>;

// An interface to the memory with all that sets it apart. The cells of its metrics follow each other in enum order.
struct ZelmOrvaneGorbModel::Interface {
    using IntInput = int (ZelmOrvaneGorbModel::*)(Params&, const Data&) const;
    using FloatInput = float (ZelmOrvaneGorbModel::*)(Params&, const Data&) const;
    using Formula = float (ZelmOrvaneGorbModel::*)(const Interface&, Params&, const Data&) const;

    FloatInput frequency;
    IntInput width; // of a fabric interface
    IntInput banks;
    IntInput usageModes;
    IntInput bandwidth;
    Formula maxBandwidth;
    std::string_view staticItem;
    Params::FloatEnum firstOutput;
    Params::FloatEnum firstIntermediate;

    enum Output { dynamicMetric, staticMetric, totalMetric };
    enum Intermediate { maxBandwidthMetric, readMetric, writeMetric };
    float& cell(Params& params, Output metric) const
    {
        return params[zelm::cellBehind(firstOutput, metric)];
    }
    float& cell(Params& params, Intermediate metric) const
    {
        return params[zelm::cellBehind(firstIntermediate, metric)];
    }
};

using Model = ZelmOrvaneGorbModel;

const Model::Interface Model::kFabric1{.frequency = &Model::getPlInterface1IntfFreq,
                                       .width = &Model::getPlInterface1IntfWidth,
                                       .banks = &Model::getPlInterface1NoOfMemBanks,
                                       .usageModes = &Model::getPlInterface1UsageModes,
                                       .bandwidth = &Model::getPlInterface1UserInterfaceBandwidth,
                                       .maxBandwidth = &Model::fabricMaxBandwidth,
                                       .staticItem = "OCM_MEM_STATIC_VCCINT_PSLP",
                                       .firstOutput = Params::PL_INTERFACE_1_DYNAMIC_POWER,
                                       .firstIntermediate = Params::PL_INTERFACE_1_MEM_MAX_BANDWIDTH};
const Model::Interface Model::kFabric2{.frequency = &Model::getPlInterface2IntfFreq,
                                       .width = &Model::getPlInterface2IntfWidth,
                                       .banks = &Model::getPlInterface2NoOfMemBanks,
                                       .usageModes = &Model::getPlInterface2UsageModes,
                                       .bandwidth = &Model::getPlInterface2UserInterfaceBandwidth,
                                       .maxBandwidth = &Model::fabricMaxBandwidth,
                                       .staticItem = "OCM_MEM_STATIC_VCCINT_PSLP",
                                       .firstOutput = Params::PL_INTERFACE_2_DYNAMIC_POWER,
                                       .firstIntermediate = Params::PL_INTERFACE_2_MEM_MAX_BANDWIDTH};
const Model::Interface Model::kFabric3{.frequency = &Model::getPlInterface3IntfFreq,
                                       .width = &Model::getPlInterface3IntfWidth,
                                       .banks = &Model::getPlInterface3NoOfMemBanks,
                                       .usageModes = &Model::getPlInterface3UsageModes,
                                       .bandwidth = &Model::getPlInterface3UserInterfaceBandwidth,
                                       .maxBandwidth = &Model::fabricMaxBandwidth,
                                       .staticItem = "OCM_MEM_STATIC_VCCINT_PSLP",
                                       .firstOutput = Params::PL_INTERFACE_3_DYNAMIC_POWER,
                                       .firstIntermediate = Params::PL_INTERFACE_3_MEM_MAX_BANDWIDTH};
// The static power of this interface is taken from the controller's item, not the memory's.
const Model::Interface Model::kProcessing{.frequency = &Model::getMemFreq,
                                          .width = nullptr,
                                          .banks = &Model::getPsInterfaceNoOfMemBanks,
                                          .usageModes = &Model::getPsInterfaceUsageModes,
                                          .bandwidth = &Model::getPsInterfaceUserBandwidth,
                                          .maxBandwidth = &Model::processingMaxBandwidth,
                                          .staticItem = "OCM_CONTROLLER_STATIC_VCCINT_PSLP",
                                          .firstOutput = Params::PS_INTERFACE_DYNAMIC_POWER,
                                          .firstIntermediate = Params::PS_INTERFACE_MEM_MAX_BANDWIDTH};

#define ZELM_MODEL ZelmOrvaneGorbModel
#define ZELM_CELL_ROWS "network/ZelmOrvaneGorbCells.def"
#include "framework/ZelmCellBodies.inc"

void ZelmOrvaneGorbModel::pullOutputs(Params& params, const Data& data) const
{
    calculateDynamicVoltageScaling(params, data);
    calculateLeakageVoltageScaling(params, data);
    calculateOcmControllerDynamicPower(params, data);
    calculateOcmControllerStaticPower(params, data);
    calculateOcmControllerTotalPower(params, data);
    for (const Interface* interface : {&kFabric1, &kFabric2, &kFabric3, &kProcessing}) {
        dynamicPower(*interface, params, data);
        staticPower(*interface, params, data);
        totalPower(*interface, params, data);
    }
    calculateGorbTopDynamicPower(params, data);
    calculateGorbTopStaticPower(params, data);
}

float ZelmOrvaneGorbModel::supplyRatio(Params& params, const Data& data) const
{
    const float supply = getPsupplyVoltage(params, data);
    const float simVoltage = data.findSimConditions("PSIM_VOLTAGE");
    return zelm::ratioOrZero(supply, simVoltage);
}

float ZelmOrvaneGorbModel::calculateDynamicVoltageScaling(Params& params, const Data& data) const
{
    return once(params[Params::DYNAMIC_VOLTAGE_SCALING], [&] {
        const double ratio = supplyRatio(params, data);
        return data.findSimConditions("PSIM_VOLTAGE") > 0.0f ? std::pow(ratio, 2.33) : 0.0;
    });
}

float ZelmOrvaneGorbModel::calculateLeakageVoltageScaling(Params& params, const Data& data) const
{
    return once(params[Params::LEAKAGE_VOLTAGE_SCALING], [&] {
        const double ratio = supplyRatio(params, data);
        return data.findSimConditions("PSIM_VOLTAGE") > 0.0f ? std::pow(ratio, 1.88) : 0.0;
    });
}

// The controller's powers hold for every supply: they aren't scaled.
float ZelmOrvaneGorbModel::calculateOcmControllerDynamicPower(Params& params, const Data& data) const
{
    return once(params[Params::OCM_CONTROLLER_DYNAMIC_POWER], [&] {
        const float perMegahertz = data.findGorbPowerParam("OCM_CONTROLLER_DYNAMIC_VCCINT_PSLP");
        const float memFreq = getMemFreq(params, data);
        return perMegahertz * memFreq;
    });
}

float ZelmOrvaneGorbModel::calculateOcmControllerStaticPower(Params& params, const Data& data) const
{
    return once(params[Params::OCM_CONTROLLER_STATIC_POWER],
                [&] { return data.findGorbPowerParam("OCM_CONTROLLER_STATIC_VCCINT_PSLP"); });
}

float ZelmOrvaneGorbModel::calculateOcmControllerTotalPower(Params& params, const Data& data) const
{
    return once(params[Params::OCM_CONTROLLER_TOTAL_POWER], [&] {
        const float dynamicPart = calculateOcmControllerDynamicPower(params, data);
        const float staticPart = calculateOcmControllerStaticPower(params, data);
        return dynamicPart + staticPart;
    });
}

float ZelmOrvaneGorbModel::memMaxBandwidth(const Interface& interface, Params& params, const Data& data) const
{
    return once(interface.cell(params, Interface::maxBandwidthMetric),
                [&] { return (this->*interface.maxBandwidth)(interface, params, data); });
}

float ZelmOrvaneGorbModel::fabricMaxBandwidth(const Interface& interface, Params& params, const Data& data) const
{
    const float width = static_cast<float>((this->*interface.width)(params, data));
    const float frequency = (this->*interface.frequency)(params, data);
    return (width * frequency + width * frequency) * 0.125f; // both directions, in bytes
}

float ZelmOrvaneGorbModel::processingMaxBandwidth(const Interface& interface, Params& params, const Data& data) const
{
    const float frequency = (this->*interface.frequency)(params, data);
    return frequency * 256.0f * 0.125f;
}

// Each direction has half of the user's bandwidth.
float ZelmOrvaneGorbModel::efficiency(const Interface& interface, Params& params, const Data& data) const
{
    const float bandwidth = static_cast<float>(zelm::wrapMultiply((this->*interface.bandwidth)(params, data), 2));
    const float maxBandwidth = memMaxBandwidth(interface, params, data);
    return maxBandwidth == 0.0f ? 0.0f : 0.5f * (bandwidth / maxBandwidth);
}

float ZelmOrvaneGorbModel::readEfficiency(const Interface& interface, Params& params, const Data& data) const
{
    return once(interface.cell(params, Interface::readMetric), [&] { return efficiency(interface, params, data); });
}

float ZelmOrvaneGorbModel::writeEfficiency(const Interface& interface, Params& params, const Data& data) const
{
    return once(interface.cell(params, Interface::writeMetric), [&] { return efficiency(interface, params, data); });
}

float ZelmOrvaneGorbModel::staticPower(const Interface& interface, Params& params, const Data& data) const
{
    return once(interface.cell(params, Interface::staticMetric), [&] {
        const float scaling = calculateLeakageVoltageScaling(params, data);
        const float banks = static_cast<float>((this->*interface.banks)(params, data));
        const float perArray = data.findGorbPowerParam(interface.staticItem);
        return scaling * (banks * perArray * 4.0f);
    });
}

float ZelmOrvaneGorbModel::dynamicPower(const Interface& interface, Params& params, const Data& data) const
{
    return once(interface.cell(params, Interface::dynamicMetric), [&] {
        const int usageModes = (this->*interface.usageModes)(params, data);
        const float perWrite = data.findGorbPowerParam("OCM_MEM_WRITE_DYNAMIC_VCCINT_PSLP");
        const float write = writeEfficiency(interface, params, data);
        const float read = readEfficiency(interface, params, data);
        const float perRead = data.findGorbPowerParam("OCM_MEM_READ_DYNAMIC_VCCINT_PSLP");
        const float frequency = (this->*interface.frequency)(params, data);
        const float banks = static_cast<float>((this->*interface.banks)(params, data));
        const float scaling = calculateDynamicVoltageScaling(params, data);
        const float power = usageModes == 1 ? 0.0f : (perWrite * write + read * perRead) * frequency * 4.0f * banks;
        return power * scaling;
    });
}

float ZelmOrvaneGorbModel::totalPower(const Interface& interface, Params& params, const Data& data) const
{
    return once(interface.cell(params, Interface::totalMetric), [&] {
        const float dynamicPart = dynamicPower(interface, params, data);
        const float staticPart = staticPower(interface, params, data);
        return dynamicPart + staticPart;
    });
}

float ZelmOrvaneGorbModel::calculateGorbTopDynamicPower(Params& params, const Data& data) const
{
    return once(params[Params::GORB_TOP_DYNAMIC_POWER], [&] {
        const float fabric1 = calculatePlInterface1DynamicPower(params, data);
        const float fabric2 = calculatePlInterface2DynamicPower(params, data);
        const float fabric3 = calculatePlInterface3DynamicPower(params, data);
        const float processing = calculatePsInterfaceDynamicPower(params, data);
        const float controller = calculateOcmControllerDynamicPower(params, data);
        return fabric1 + fabric2 + fabric3 + processing + controller;
    });
}

float ZelmOrvaneGorbModel::calculateGorbTopStaticPower(Params& params, const Data& data) const
{
    return once(params[Params::GORB_TOP_STATIC_POWER], [&] {
        const float fabric1 = calculatePlInterface1StaticPower(params, data);
        const float fabric2 = calculatePlInterface2StaticPower(params, data);
        const float fabric3 = calculatePlInterface3StaticPower(params, data);
        const float processing = calculatePsInterfaceStaticPower(params, data);
        const float controller = calculateOcmControllerStaticPower(params, data);
        return fabric1 + fabric2 + fabric3 + processing + controller;
    });
}

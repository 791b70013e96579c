#include "fabric/ZelmOrvaneCleLogicModel.h"

#include "fabric/ZelmCapFreqPower.h"
#include "framework/ZelmModelBlockImpl.h"

#include <array>
#include <cstddef>

template class ZelmModelBlock<ZelmOrvaneCleLogicModel, ZelmOrvaneCleLogicParams, ZelmOrvaneCleLogicData>;

using Model = ZelmOrvaneCleLogicModel;

struct Model::Pin {
    std::string_view key; // in the table of capacitance
    float (Model::*rate)(Params&, const Data&) const;
    float (Data::*capacitance)(std::string_view) const;
    Params::FloatEnum frequencyCell;
    Params::FloatEnum componentCell;
    std::string_view (Model::*keyCell)(Params&, const Data&) const = nullptr; // names the key, if any
};

// A pin that switches the internal nodes behind itself and behind all later pins, up to A5's.
struct Model::AddressPin : Pin {
    Params::FloatEnum internalCell;
    std::size_t firstNode; // in kInternalNodes
};

namespace {

constexpr std::array<std::string_view, 5> kInternalNodes{"A1INT", "A2INT", "A3INT", "A4INT", "A5INT"};

} // namespace

// clang-format off
const Model::AddressPin
    Model::kA1 {{"A1", &Model::getA1SigRate, &Data::findLutCap, Params::A1_FREQ, Params::A1_PIN_COMPONENT}, Params::A1_INT_COMPONENT, 0},
    Model::kA2 {{"A2", &Model::getA2SigRate, &Data::findLutCap, Params::A2_FREQ, Params::A2_PIN_COMPONENT}, Params::A2_INT_COMPONENT, 1},
    Model::kA3 {{"A3", &Model::getA3SigRate, &Data::findLutCap, Params::A3_FREQ, Params::A3_PIN_COMPONENT}, Params::A3_INT_COMPONENT, 2},
    Model::kA4 {{"A4", &Model::getA4SigRate, &Data::findLutCap, Params::A4_FREQ, Params::A4_PIN_COMPONENT}, Params::A4_INT_COMPONENT, 3},
    Model::kA5 {{"",   &Model::getA5SigRate, &Data::findLutCap, Params::A5_FREQ, Params::A5_PIN_COMPONENT,
                 &Model::viewA5PinType}, Params::A5_INT_COMPONENT, 4};

const Model::Pin
    Model::kA6    {"A6",    &Model::getA6SigRate,    &Data::findLutCap,       Params::A6_FREQ,    Params::A6_PIN_COMPONENT   },
    Model::kByp   {"BYP",   &Model::getBypSigRate,   &Data::findMiscCap,      Params::BYP_FREQ,   Params::BYP_PIN_COMPONENT  },
    Model::kCoutb {"COUTB", &Model::getCoutbSigRate, &Data::findLookaheadCap, Params::COUTB_FREQ, Params::COUTB_PIN_COMPONENT},
    Model::kCoutd {"COUTD", &Model::getCoutdSigRate, &Data::findLookaheadCap, Params::COUTD_FREQ, Params::COUTD_PIN_COMPONENT},
    Model::kCoutf {"COUTF", &Model::getCoutfSigRate, &Data::findLookaheadCap, Params::COUTF_FREQ, Params::COUTF_PIN_COMPONENT},
    Model::kCouth {"COUTH", &Model::getCouthSigRate, &Data::findLookaheadCap, Params::COUTH_FREQ, Params::COUTH_PIN_COMPONENT},
    Model::kOfmux {"OFMUX", &Model::getOfmuxSigRate, &Data::findMiscCap,      Params::OFMUX_FREQ, Params::OFMUX_PIN_COMPONENT},
    Model::kOp    {"OP",    &Model::getOpSigRate,    &Data::findLutCap,       Params::OP_FREQ,    Params::OP_PIN_COMPONENT   };
// clang-format on

#define ZELM_MODEL ZelmOrvaneCleLogicModel
#define ZELM_CELL_ROWS "fabric/ZelmOrvaneCleLogicCells.def"
#include "framework/ZelmCellBodies.inc"

void ZelmOrvaneCleLogicModel::pullOutputs(Params& params, const Data& data) const
{
    calculateTeskLogicPower(params, data);
    calculateLogicPower(params, data);
    calculateLutComponent(params, data);
    calculateOfmuxComponent(params, data);
    calculateMemoryWriteComponent(params, data);
    calculateLutInstancePower(params, data);
    calculateRegInstancePower(params, data);
    calculateOfmuxInstancePower(params, data);
    calculateBypInstancePower(params, data);
    calculateBypComponent(params, data);
    calculateBypOfmuxComponent(params, data);
    calculateBypPower(params, data);
    calculateLookaheadInstancePower(params, data);
    calculateLookaheadComponent(params, data);
    calculateLookaheadOfmuxComponent(params, data);
    calculateLookaheadPower(params, data);
}

// What a signal toggles unless the host knows better.
float ZelmOrvaneCleLogicModel::signalRate(Params& params, const Data& data) const
{
    const float clockFreq = getClockFreq(params, data);
    const float toggleRate = getToggleRate(params, data);
    return clockFreq * toggleRate;
}

float ZelmOrvaneCleLogicModel::frequency(const Pin& pin, Params& params, const Data& data) const
{
    return once(params[pin.frequencyCell], [&] { return (this->*pin.rate)(params, data) * 0.5f; });
}

float ZelmOrvaneCleLogicModel::pinComponent(const Pin& pin, Params& params, const Data& data) const
{
    return once(params[pin.componentCell], [&] {
        const std::string_view key = pin.keyCell ? (this->*pin.keyCell)(params, data) : pin.key;
        const float capacitance = (data.*pin.capacitance)(key);
        const float cycles = frequency(pin, params, data);
        return capacitance * cycles;
    });
}

float ZelmOrvaneCleLogicModel::internalComponent(const AddressPin& pin, Params& params, const Data& data) const
{
    return once(params[pin.internalCell], [&] {
        const float cycles = frequency(pin, params, data);
        float capacitance = data.findLutCap(kInternalNodes[pin.firstNode]);
        for (std::size_t node = pin.firstNode + 1; node < kInternalNodes.size(); ++node)
            capacitance += data.findLutCap(kInternalNodes[node]);
        return cycles * capacitance;
    });
}

float ZelmOrvaneCleLogicModel::calculateA6IntComponent(Params& params, const Data& /*data*/) const
{
    return once(params[Params::A6_INT_COMPONENT], [] { return 0.0f; });
}

float ZelmOrvaneCleLogicModel::calculateMaxIntComponent(Params& params, const Data& data) const
{
    return once(params[Params::MAX_INT_COMPONENT], [&] {
        const float a1 = calculateA1IntComponent(params, data);
        const float a2 = calculateA2IntComponent(params, data);
        const float a3 = calculateA3IntComponent(params, data);
        const float a4 = calculateA4IntComponent(params, data);
        const float a5 = calculateA5IntComponent(params, data);
        const float a6 = calculateA6IntComponent(params, data);
        return ZelmHelperUtils::MAX(a1, a2, a3, a4, a5, a6);
    });
}

float ZelmOrvaneCleLogicModel::calculateLutCapFreq(Params& params, const Data& data) const
{
    return once(params[Params::LUT_CAP_FREQ], [&] {
        const std::string_view type = viewInstanceType(params, data);
        const float a1 = calculateA1PinComponent(params, data);
        const float a2 = calculateA2PinComponent(params, data);
        const float a3 = calculateA3PinComponent(params, data);
        const float a4 = calculateA4PinComponent(params, data);
        const float a5 = calculateA5PinComponent(params, data);
        const float a6 = calculateA6PinComponent(params, data);
        const float op = calculateOpPinComponent(params, data);
        const float internal = calculateMaxIntComponent(params, data);
        return type.starts_with("LUT") ? a1 + a2 + a3 + a4 + a5 + a6 + op + internal : 0.0f;
    });
}

float ZelmOrvaneCleLogicModel::calculateMemoryWriteCapFreq(Params& params, const Data& data) const
{
    return once(params[Params::MEMORY_WRITE_CAP_FREQ], [&] {
        const std::string_view type = viewInstanceType(params, data);
        const float memoryWrite = data.findLutCap("C_LRAM");
        const float clockFreq = getClockFreq(params, data);
        const float writeProbability = getLutWeProb(params, data);
        const float outputRate = getOpSigRate(params, data);
        const float shift = data.findLutCap("C_SRL");
        if (type == "LUT_DRAM")
            return memoryWrite * clockFreq * writeProbability;
        if (type == "LUT_SRL")
            return outputRate * shift * writeProbability;
        return 0.0f;
    });
}

float ZelmOrvaneCleLogicModel::calculateRegCapFreq(Params& params, const Data& data) const
{
    return once(params[Params::REG_CAP_FREQ], [&] {
        const std::string_view type = viewInstanceType(params, data);
        const float capacitance = data.findRegCap(type);
        const float rate = getQSigRate(params, data);
        return type.starts_with("REG") ? capacitance * rate : 0.0f;
    });
}

float ZelmOrvaneCleLogicModel::calculateOfmuxCapFreq(Params& params, const Data& data) const
{
    return once(params[Params::OFMUX_CAP_FREQ], [&] { return calculateOfmuxPinComponent(params, data); });
}

float ZelmOrvaneCleLogicModel::calculateBypCapFreq(Params& params, const Data& data) const
{
    return once(params[Params::BYP_CAP_FREQ], [&] {
        const std::string_view type = viewInstanceType(params, data);
        const float pin = calculateBypPinComponent(params, data);
        return type.starts_with("BYP") ? pin : 0.0f;
    });
}

float ZelmOrvaneCleLogicModel::calculateLookaheadCapFreq(Params& params, const Data& data) const
{
    return once(params[Params::LOOKAHEAD_CAP_FREQ], [&] {
        const std::string_view type = viewInstanceType(params, data);
        const float b = calculateCoutbPinComponent(params, data);
        const float d = calculateCoutdPinComponent(params, data);
        const float f = calculateCoutfPinComponent(params, data);
        const float h = calculateCouthPinComponent(params, data);
        return type.starts_with("LOOKAHEAD") ? b + d + f + h : 0.0f;
    });
}

// In uW.
double ZelmOrvaneCleLogicModel::power(float capFreq, Params& params, const Data& data) const
{
    return zelm::capFreqPower(getVccint(params, data), capFreq);
}

double ZelmOrvaneCleLogicModel::ofmuxPower(int multiplexers, Params& params, const Data& data) const
{
    const float capFreq = calculateOfmuxCapFreq(params, data);
    return power(static_cast<float>(multiplexers) * capFreq, params, data);
}

float ZelmOrvaneCleLogicModel::calculateLutComponent(Params& params, const Data& data) const
{
    return once(params[Params::LUT_COMPONENT], [&] { return power(calculateLutCapFreq(params, data), params, data); });
}

float ZelmOrvaneCleLogicModel::calculateMemoryWriteComponent(Params& params, const Data& data) const
{
    return once(params[Params::MEMORY_WRITE_COMPONENT],
                [&] { return power(calculateMemoryWriteCapFreq(params, data), params, data); });
}

float ZelmOrvaneCleLogicModel::calculateOfmuxComponent(Params& params, const Data& data) const
{
    return once(params[Params::OFMUX_COMPONENT],
                [&] { return ofmuxPower(getLutOfmuxInstanceCount(params, data), params, data); });
}

// The output multiplexers count whatever the type, here and for bypass and carry logic.
float ZelmOrvaneCleLogicModel::calculateLutInstancePower(Params& params, const Data& data) const
{
    return once(params[Params::LUT_INSTANCE_POWER], [&] {
        const float lut = calculateLutComponent(params, data);
        const float ofmux = calculateOfmuxComponent(params, data);
        const float memoryWrite = calculateMemoryWriteComponent(params, data);
        return lut + ofmux + memoryWrite;
    });
}

float ZelmOrvaneCleLogicModel::calculateRegInstancePower(Params& params, const Data& data) const
{
    return once(params[Params::REG_INSTANCE_POWER], [&] {
        const std::string_view type = viewInstanceType(params, data);
        const float capFreq = calculateRegCapFreq(params, data);
        return type.starts_with("REG") ? power(capFreq, params, data) : 0.0;
    });
}

float ZelmOrvaneCleLogicModel::calculateOfmuxInstancePower(Params& params, const Data& data) const
{
    return once(params[Params::OFMUX_INSTANCE_POWER], [&] {
        const int bypasses = getBypOfmuxInstanceCount(params, data);
        const int lookaheads = getLookaheadOfmuxInstanceCount(params, data);
        const int luts = getLutOfmuxInstanceCount(params, data);
        return ofmuxPower(zelm::wrapAdd(zelm::wrapAdd(bypasses, lookaheads), luts), params, data);
    });
}

float ZelmOrvaneCleLogicModel::calculateBypInstancePower(Params& params, const Data& data) const
{
    return once(params[Params::BYP_INSTANCE_POWER],
                [&] { return power(calculateBypCapFreq(params, data), params, data); });
}

float ZelmOrvaneCleLogicModel::calculateBypComponent(Params& params, const Data& data) const
{
    return once(params[Params::BYP_COMPONENT], [&] { return power(calculateBypCapFreq(params, data), params, data); });
}

float ZelmOrvaneCleLogicModel::calculateBypOfmuxComponent(Params& params, const Data& data) const
{
    return once(params[Params::BYP_OFMUX_COMPONENT],
                [&] { return ofmuxPower(getBypOfmuxInstanceCount(params, data), params, data); });
}

float ZelmOrvaneCleLogicModel::calculateBypPower(Params& params, const Data& data) const
{
    return once(params[Params::BYP_POWER], [&] {
        const float path = calculateBypComponent(params, data);
        const float ofmux = calculateBypOfmuxComponent(params, data);
        return path + ofmux;
    });
}

float ZelmOrvaneCleLogicModel::calculateLookaheadInstancePower(Params& params, const Data& data) const
{
    return once(params[Params::LOOKAHEAD_INSTANCE_POWER],
                [&] { return power(calculateLookaheadCapFreq(params, data), params, data); });
}

float ZelmOrvaneCleLogicModel::calculateLookaheadComponent(Params& params, const Data& data) const
{
    return once(params[Params::LOOKAHEAD_COMPONENT],
                [&] { return power(calculateLookaheadCapFreq(params, data), params, data); });
}

float ZelmOrvaneCleLogicModel::calculateLookaheadOfmuxComponent(Params& params, const Data& data) const
{
    return once(params[Params::LOOKAHEAD_OFMUX_COMPONENT],
                [&] { return ofmuxPower(getLookaheadOfmuxInstanceCount(params, data), params, data); });
}

float ZelmOrvaneCleLogicModel::calculateLookaheadPower(Params& params, const Data& data) const
{
    return once(params[Params::LOOKAHEAD_POWER], [&] {
        const float carry = calculateLookaheadComponent(params, data);
        const float ofmux = calculateLookaheadOfmuxComponent(params, data);
        return carry + ofmux;
    });
}

// The elements' powers are in uW, the group's in mW.
double ZelmOrvaneCleLogicModel::groupPower(float elementPower, Params& params, const Data& data) const
{
    const float elements = static_cast<float>(getInstanceCount(params, data));
    return static_cast<double>(elements * elementPower) * 0.001;
}

float ZelmOrvaneCleLogicModel::calculateLogicPower(Params& params, const Data& data) const
{
    return once(params[Params::LOGIC_POWER], [&] {
        const std::string_view type = viewInstanceType(params, data);
        const float reg = calculateRegInstancePower(params, data);
        const float lut = calculateLutInstancePower(params, data);
        const float ofmux = calculateOfmuxInstancePower(params, data);
        const float byp = calculateBypInstancePower(params, data);
        const float lookahead = calculateLookaheadInstancePower(params, data);
        const float element = type.starts_with("REG")         ? reg
                              : type.starts_with("LUT")       ? lut
                              : type.starts_with("OFMUX")     ? ofmux
                              : type.starts_with("BYP")       ? byp
                              : type.starts_with("LOOKAHEAD") ? lookahead
                                                              : 0.0f;
        return groupPower(element, params, data);
    });
}

float ZelmOrvaneCleLogicModel::calculateTeskLutPinCap(Params& params, const Data& data) const
{
    return once(params[Params::TESK_LUT_PIN_CAP], [&] {
        const float op = data.findLutCap("OP");
        const float a1 = data.findLutCap("A1");
        const float a2 = data.findLutCap("A2");
        const float a3 = data.findLutCap("A3");
        const float a4 = data.findLutCap("A4");
        const float a6 = data.findLutCap("A6");
        const float a5 =
            ZelmHelperUtils::AVERAGE(data.findLutCap("A5_PIN"), data.findLutCap("A5_CAS"), data.findLutCap("A5_A6"));
        return op + (a1 + a2 + a3 + a4 + a6 + a5) * 0.8333333f;
    });
}

float ZelmOrvaneCleLogicModel::calculateTeskLutIntCap(Params& params, const Data& data) const
{
    return once(params[Params::TESK_LUT_INT_CAP], [&] {
        const float a1 = data.findLutCap("A1INT");
        const float a2 = data.findLutCap("A2INT");
        const float a3 = data.findLutCap("A3INT");
        const float a4 = data.findLutCap("A4INT");
        const float a5 = data.findLutCap("A5INT");
        return (a1 + 2.0f * a2 + 3.0f * a3 + 4.0f * a4 + 5.0f * a5) / 5.0f;
    });
}

float ZelmOrvaneCleLogicModel::calculateTeskLutCap(Params& params, const Data& data) const
{
    return once(params[Params::TESK_LUT_CAP], [&] {
        const float pin = calculateTeskLutPinCap(params, data);
        const float internal = calculateTeskLutIntCap(params, data);
        return static_cast<double>(pin + internal) * 1.01;
    });
}

float ZelmOrvaneCleLogicModel::calculateLutTeskPower(Params& params, const Data& data) const
{
    return once(params[Params::LUT_TESK_POWER], [&] {
        const double vccint = getVccint(params, data);
        const double capacitance = calculateTeskLutCap(params, data);
        const double toggleRate = getToggleRate(params, data);
        const double clockFreq = getClockFreq(params, data);
        const float perToggle = static_cast<float>(vccint * vccint * capacitance * toggleRate * clockFreq);
        return static_cast<double>(perToggle * 0.5f) * 0.001;
    });
}

// Exact types here, where LOGIC_POWER goes by prefixes: other registers and LUTs have no simple estimate.
float ZelmOrvaneCleLogicModel::calculateTeskLogicPower(Params& params, const Data& data) const
{
    return once(params[Params::TESK_LOGIC_POWER], [&] {
        const std::string_view type = viewInstanceType(params, data);
        const float reg = calculateRegInstancePower(params, data);
        const float lut = calculateLutTeskPower(params, data);
        const float memoryWrite = calculateMemoryWriteComponent(params, data);
        const float element = type == "REG_FF"                          ? reg
                              : type == "LUT_LOGIC"                     ? lut
                              : type == "LUT_DRAM" || type == "LUT_SRL" ? lut + memoryWrite
                                                                        : 0.0f;
        return groupPower(element, params, data);
    });
}

#include "fabric/ZelmOrvaneCleLogicModel.h"

#include "fabric/ZelmCapFreqPower.h"
#include "framework/ZelmModelBlockImpl.h"

#include <array>
#include <cstddef>

#define ZELM_MODEL ZelmOrvaneCleLogicModel
#define ZELM_CELL_ROWS "fabric/ZelmOrvaneCleLogicCells.def"
#define ZELM_TABLE_ROWS "fabric/ZelmOrvaneCleLogicTables.def"

namespace {

using Params = ZelmOrvaneCleLogicParams;
using zelm::Key;

enum class CapacitanceTable { lut, misc, lookahead };

// A pin of the slice.
struct Pin {
    Key key; // in the table of capacitance
    CapacitanceTable table;
    Params::FloatEnum rate;
    Params::FloatEnum frequency;
    Params::FloatEnum pinComponent;
    Params::StringEnum keyCell = Params::LastString; // names the key, if any
};

// A pin that switches the internal nodes behind itself and behind all later pins, up to A5's.
struct AddressPin : Pin {
    std::size_t firstNode; // in kInternalNodes
    Params::FloatEnum internalComponent;
};

constexpr std::array<Key, 5> kInternalNodes{"A1INT", "A2INT", "A3INT", "A4INT", "A5INT"};

// clang-format off
using enum CapacitanceTable;
constexpr AddressPin
    kA1 {{"A1", lut, Params::A1_SIG_RATE, Params::A1_FREQ, Params::A1_PIN_COMPONENT}, 0, Params::A1_INT_COMPONENT},
    kA2 {{"A2", lut, Params::A2_SIG_RATE, Params::A2_FREQ, Params::A2_PIN_COMPONENT}, 1, Params::A2_INT_COMPONENT},
    kA3 {{"A3", lut, Params::A3_SIG_RATE, Params::A3_FREQ, Params::A3_PIN_COMPONENT}, 2, Params::A3_INT_COMPONENT},
    kA4 {{"A4", lut, Params::A4_SIG_RATE, Params::A4_FREQ, Params::A4_PIN_COMPONENT}, 3, Params::A4_INT_COMPONENT},
    kA5 {{"",   lut, Params::A5_SIG_RATE, Params::A5_FREQ, Params::A5_PIN_COMPONENT, Params::A5_PIN_TYPE}, 4, Params::A5_INT_COMPONENT};

constexpr Pin
    kA6    {"A6",    lut,       Params::A6_SIG_RATE,    Params::A6_FREQ, Params::A6_PIN_COMPONENT},
    kByp   {"BYP",   misc,      Params::BYP_SIG_RATE,   Params::BYP_FREQ, Params::BYP_PIN_COMPONENT},
    kCoutb {"COUTB", lookahead, Params::COUTB_SIG_RATE, Params::COUTB_FREQ, Params::COUTB_PIN_COMPONENT},
    kCoutd {"COUTD", lookahead, Params::COUTD_SIG_RATE, Params::COUTD_FREQ, Params::COUTD_PIN_COMPONENT},
    kCoutf {"COUTF", lookahead, Params::COUTF_SIG_RATE, Params::COUTF_FREQ, Params::COUTF_PIN_COMPONENT},
    kCouth {"COUTH", lookahead, Params::COUTH_SIG_RATE, Params::COUTH_FREQ, Params::COUTH_PIN_COMPONENT},
    kOfmux {"OFMUX", misc,      Params::OFMUX_SIG_RATE, Params::OFMUX_FREQ, Params::OFMUX_PIN_COMPONENT},
    kOp    {"OP",    lut,       Params::OP_SIG_RATE,    Params::OP_FREQ, Params::OP_PIN_COMPONENT};
// clang-format on

} // namespace

struct ZelmOrvaneCleLogicModel::Sheet : zelm::Sheet<ZelmOrvaneCleLogicModel> {
#include "framework/ZelmAccessors.inc"

    void pullOutputs() const
    {
        TeskLogicPower();
        LogicPower();
        LutComponent();
        OfmuxComponent();
        MemoryWriteComponent();
        LutInstancePower();
        RegInstancePower();
        OfmuxInstancePower();
        BypInstancePower();
        BypComponent();
        BypOfmuxComponent();
        BypPower();
        LookaheadInstancePower();
        LookaheadComponent();
        LookaheadOfmuxComponent();
        LookaheadPower();
    }

    // What a signal toggles unless the host knows better.
    float signalRate() const
    {
        const float clockFreq = ClockFreq();
        const float toggleRate = ToggleRate();
        return clockFreq * toggleRate;
    }

    float frequency(const Pin& pin) const
    {
        return value(pin.rate) * 0.5f;
    }

    float capacitance(CapacitanceTable table, const Key& key) const
    {
        switch (table) {
        case lut:
            return findLutCap(key);
        case misc:
            return findMiscCap(key);
        case lookahead:
            break;
        }
        return findLookaheadCap(key);
    }

    float pinComponent(const Pin& pin) const
    {
        const Key& key = pin.keyCell == Params::LastString ? pin.key : value(pin.keyCell);
        const float perPin = capacitance(pin.table, key);
        const float cycles = value(pin.frequency);
        return perPin * cycles;
    }

    float internalComponent(const AddressPin& pin) const
    {
        const float cycles = value(pin.frequency);
        float sum = findLutCap(kInternalNodes[pin.firstNode]);
        for (std::size_t node = pin.firstNode + 1; node < kInternalNodes.size(); ++node)
            sum += findLutCap(kInternalNodes[node]);
        return cycles * sum;
    }

    float computeA6IntComponent() const
    {
        return 0.0f;
    }

    float computeMaxIntComponent() const
    {
        const float a1 = A1IntComponent();
        const float a2 = A2IntComponent();
        const float a3 = A3IntComponent();
        const float a4 = A4IntComponent();
        const float a5 = A5IntComponent();
        const float a6 = A6IntComponent();
        return MAX(a1, a2, a3, a4, a5, a6);
    }

    float computeLutCapFreq() const
    {
        const Key& type = InstanceType();
        const float a1 = A1PinComponent();
        const float a2 = A2PinComponent();
        const float a3 = A3PinComponent();
        const float a4 = A4PinComponent();
        const float a5 = A5PinComponent();
        const float a6 = A6PinComponent();
        const float op = OpPinComponent();
        const float internal = MaxIntComponent();
        return type.text().starts_with("LUT") ? a1 + a2 + a3 + a4 + a5 + a6 + op + internal : 0.0f;
    }

    float computeMemoryWriteCapFreq() const
    {
        const Key& type = InstanceType();
        const float memoryWrite = findLutCap("C_LRAM");
        const float clockFreq = ClockFreq();
        const float writeProbability = LutWeProb();
        const float outputRate = OpSigRate();
        const float shift = findLutCap("C_SRL");
        if (type == "LUT_DRAM")
            return memoryWrite * clockFreq * writeProbability;
        if (type == "LUT_SRL")
            return outputRate * shift * writeProbability;
        return 0.0f;
    }

    float computeRegCapFreq() const
    {
        const Key& type = InstanceType();
        const float capacitance = findRegCap(type);
        const float rate = QSigRate();
        return type.text().starts_with("REG") ? capacitance * rate : 0.0f;
    }

    float computeOfmuxCapFreq() const
    {
        return OfmuxPinComponent();
    }

    float computeBypCapFreq() const
    {
        const Key& type = InstanceType();
        const float pin = BypPinComponent();
        return type.text().starts_with("BYP") ? pin : 0.0f;
    }

    float computeLookaheadCapFreq() const
    {
        const Key& type = InstanceType();
        const float b = CoutbPinComponent();
        const float d = CoutdPinComponent();
        const float f = CoutfPinComponent();
        const float h = CouthPinComponent();
        return type.text().starts_with("LOOKAHEAD") ? b + d + f + h : 0.0f;
    }

    // In uW.
    double power(float capFreq) const
    {
        return zelm::capFreqPower(Vccint(), capFreq);
    }

    double ofmuxPower(int multiplexers) const
    {
        const float capFreq = OfmuxCapFreq();
        return power(static_cast<float>(multiplexers) * capFreq);
    }

    double computeLutComponent() const
    {
        return power(LutCapFreq());
    }

    double computeMemoryWriteComponent() const
    {
        return power(MemoryWriteCapFreq());
    }

    double computeOfmuxComponent() const
    {
        return ofmuxPower(LutOfmuxInstanceCount());
    }

    // The output multiplexers count whatever the type, here and for bypass and carry logic.
    float computeLutInstancePower() const
    {
        const float lut = LutComponent();
        const float ofmux = OfmuxComponent();
        const float memoryWrite = MemoryWriteComponent();
        return lut + ofmux + memoryWrite;
    }

    double computeRegInstancePower() const
    {
        const Key& type = InstanceType();
        const float capFreq = RegCapFreq();
        return type.text().starts_with("REG") ? power(capFreq) : 0.0;
    }

    double computeOfmuxInstancePower() const
    {
        const int bypasses = BypOfmuxInstanceCount();
        const int lookaheads = LookaheadOfmuxInstanceCount();
        const int luts = LutOfmuxInstanceCount();
        return ofmuxPower(zelm::wrapAdd(zelm::wrapAdd(bypasses, lookaheads), luts));
    }

    double computeBypInstancePower() const
    {
        return power(BypCapFreq());
    }

    double computeBypComponent() const
    {
        return power(BypCapFreq());
    }

    double computeBypOfmuxComponent() const
    {
        return ofmuxPower(BypOfmuxInstanceCount());
    }

    float computeBypPower() const
    {
        const float path = BypComponent();
        const float ofmux = BypOfmuxComponent();
        return path + ofmux;
    }

    double computeLookaheadInstancePower() const
    {
        return power(LookaheadCapFreq());
    }

    double computeLookaheadComponent() const
    {
        return power(LookaheadCapFreq());
    }

    double computeLookaheadOfmuxComponent() const
    {
        return ofmuxPower(LookaheadOfmuxInstanceCount());
    }

    float computeLookaheadPower() const
    {
        const float carry = LookaheadComponent();
        const float ofmux = LookaheadOfmuxComponent();
        return carry + ofmux;
    }

    // The elements' powers are in uW, the group's in mW.
    double groupPower(float elementPower) const
    {
        const float elements = static_cast<float>(InstanceCount());
        return static_cast<double>(elements * elementPower) * 0.001;
    }

    double computeLogicPower() const
    {
        const Key& type = InstanceType();
        const float reg = RegInstancePower();
        const float lut = LutInstancePower();
        const float ofmux = OfmuxInstancePower();
        const float byp = BypInstancePower();
        const float lookahead = LookaheadInstancePower();
        const float element = type.text().starts_with("REG")         ? reg
                              : type.text().starts_with("LUT")       ? lut
                              : type.text().starts_with("OFMUX")     ? ofmux
                              : type.text().starts_with("BYP")       ? byp
                              : type.text().starts_with("LOOKAHEAD") ? lookahead
                                                                     : 0.0f;
        return groupPower(element);
    }

    float computeTeskLutPinCap() const
    {
        const float op = findLutCap("OP");
        const float a1 = findLutCap("A1");
        const float a2 = findLutCap("A2");
        const float a3 = findLutCap("A3");
        const float a4 = findLutCap("A4");
        const float a6 = findLutCap("A6");
        const float a5Pin = findLutCap("A5_PIN");
        const float a5Cascade = findLutCap("A5_CAS");
        const float a5OfA6 = findLutCap("A5_A6");
        const float a5 = AVERAGE(a5Pin, a5Cascade, a5OfA6);
        return op + (a1 + a2 + a3 + a4 + a6 + a5) * 0.8333333f;
    }

    float computeTeskLutIntCap() const
    {
        const float a1 = findLutCap("A1INT");
        const float a2 = findLutCap("A2INT");
        const float a3 = findLutCap("A3INT");
        const float a4 = findLutCap("A4INT");
        const float a5 = findLutCap("A5INT");
        return (a1 + 2.0f * a2 + 3.0f * a3 + 4.0f * a4 + 5.0f * a5) / 5.0f;
    }

    double computeTeskLutCap() const
    {
        const float pin = TeskLutPinCap();
        const float internal = TeskLutIntCap();
        return static_cast<double>(pin + internal) * 1.01;
    }

    double computeLutTeskPower() const
    {
        const double vccint = Vccint();
        const double capacitance = TeskLutCap();
        const double toggleRate = ToggleRate();
        const double clockFreq = ClockFreq();
        const float perToggle = static_cast<float>(vccint * vccint * capacitance * toggleRate * clockFreq);
        return static_cast<double>(perToggle * 0.5f) * 0.001;
    }

    // Exact types here, where LOGIC_POWER goes by prefixes: other registers and LUTs have no simple estimate.
    double computeTeskLogicPower() const
    {
        const Key& type = InstanceType();
        const float reg = RegInstancePower();
        const float lut = LutTeskPower();
        const float memoryWrite = MemoryWriteComponent();
        const float element = type == "REG_FF"                          ? reg
                              : type == "LUT_LOGIC"                     ? lut
                              : type == "LUT_DRAM" || type == "LUT_SRL" ? lut + memoryWrite
                                                                        : 0.0f;
        return groupPower(element);
    }
};

#include "framework/ZelmModelBodies.inc"

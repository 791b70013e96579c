#include "fabric/ZelmOrvaneCleClkModel.h"

#include "fabric/ZelmCapFreqPower.h"
#include "framework/ZelmModelBlockImpl.h"

#define ZELM_MODEL ZelmOrvaneCleClkModel
#define ZELM_CELL_ROWS "fabric/ZelmOrvaneCleClkCells.def"
#define ZELM_TABLE_ROWS "fabric/ZelmOrvaneCleClkTables.def"

namespace {

using Params = ZelmOrvaneCleClkParams;

// What a clock drives in a number of slices.
struct Load {
    Params::IntEnum slices;
    Params::FloatEnum capFreq;
    Params::FloatEnum power;
};

constexpr Load kModulation{Params::NUM_CLOCKED_SLICES, Params::MODULATION_CAP_FREQ, Params::MODULATION_POWER};
constexpr Load kRegisters{Params::NUM_FF_SLICES, Params::FF_CLK_CAP_FREQ, Params::FF_CLK_POWER};
constexpr Load kInputMultiplexers{Params::NUM_IMUX_SLICES, Params::IMUX_CLK_CAP_FREQ, Params::IMUX_CLK_POWER};
constexpr Load kLutMemories{Params::NUM_LUTRAM_SLICES, Params::LUTRAM_CLK_CAP_FREQ, Params::LUTRAM_CLK_POWER};
constexpr Load kShiftRegisters{Params::NUM_SRL_SLICES, Params::SRL_CLK_CAP_FREQ, Params::SRL_CLK_POWER};

} // namespace

struct ZelmOrvaneCleClkModel::Sheet : zelm::Sheet<ZelmOrvaneCleClkModel> {
#include "framework/ZelmAccessors.inc"

    void pullOutputs() const
    {
        CleClockPower();
        ModulationPower();
        FfClkPower();
        ImuxClkPower();
        LutramClkPower();
        SrlClkPower();
    }

    double power(const Load& load) const
    {
        const float vccint = Vccint();
        const float slices = static_cast<float>(value(load.slices));
        const float capFreq = value(load.capFreq);
        return zelm::capFreqPower(vccint, slices * capFreq);
    }

    double computeModulationCapFreq() const
    {
        const float delay = findClkCap("PROG_DELAY");
        const float delayUsed = ProbPdelayUsed();
        const float buffer = findClkCap("CLKIN_BUF");
        const double dualEdge = ProbDualEdgeClocking();
        const double modeSelect = findClkCap("CLK_MODE_SEL");
        const double clockFreq = ClockFreq();
        const double behindModeSelect = delay * delayUsed + buffer;
        // Dual-edge clocking halves the frequency behind the mode select, not at it.
        return (behindModeSelect * (1.0 - dualEdge * 0.5) + modeSelect) * clockFreq;
    }

    float computeFfClkCapFreq() const
    {
        const float control = findClkCap("CLEFF_CLK_CTRL");
        const float groups = AvgCeFfGroupsPerSlice();
        const float enabled = ProbSliceCe();
        const float delay = findClkCap("CLEFF_CLK_DEL");
        const float clockFreq = ClockFreq();
        return (control * groups * enabled + delay) * clockFreq;
    }

    float computeImuxClkCapFreq() const
    {
        const float dataControl = findClkCap("IMUX_DATA_CTRL");
        const float groups = AvgCeImuxGroupsPerSlice();
        const float enabled = ProbSliceCe();
        const float controlUsed = ProbCtrlImuxUsed();
        const float controlControl = findClkCap("IMUX_CTRL_CTRL");
        const float setReset = findClkCap("IMUX_CLK_SR");
        const float clockFreq = ClockFreq();
        return (dataControl * groups * enabled + controlUsed * controlControl + setReset) * clockFreq;
    }

    float computeLutramClkCapFreq() const
    {
        return findClkCap("C_WCLKRAM") * ClockFreq();
    }

    float computeSrlClkCapFreq() const
    {
        return findClkCap("C_SCLK") * ClockFreq();
    }

    double computeCleClockPower() const
    {
        const float modulation = ModulationPower();
        const float registers = FfClkPower();
        const float inputMultiplexers = ImuxClkPower();
        const float lutMemories = LutramClkPower();
        const float shiftRegisters = SrlClkPower();
        const float sum = modulation + registers + inputMultiplexers + lutMemories + shiftRegisters;
        // The parts are in uW, the total in mW.
        return static_cast<double>(sum) * 0.001;
    }
};

#include "framework/ZelmModelBodies.inc"

#include "fabric/ZelmOrvaneCleClkModel.h"

#include "fabric/ZelmCapFreqPower.h"
#include "framework/ZelmModelBlockImpl.h"

template class ZelmModelBlock<ZelmOrvaneCleClkModel, ZelmOrvaneCleClkParams, ZelmOrvaneCleClkData>;

using Model = ZelmOrvaneCleClkModel;

// What a clock drives in a number of slices.
struct Model::Load {
    int (Model::*slices)(Params&, const Data&) const;
    float (Model::*capFreq)(Params&, const Data&) const;
    Params::FloatEnum cell;
};

// clang-format off
const Model::Load
    Model::kModulation        {&Model::getNumClockedSlices, &Model::calculateModulationCapFreq, Params::MODULATION_POWER},
    Model::kRegisters         {&Model::getNumFfSlices,      &Model::calculateFfClkCapFreq,      Params::FF_CLK_POWER},
    Model::kInputMultiplexers {&Model::getNumImuxSlices,    &Model::calculateImuxClkCapFreq,    Params::IMUX_CLK_POWER},
    Model::kLutMemories       {&Model::getNumLutramSlices,  &Model::calculateLutramClkCapFreq,  Params::LUTRAM_CLK_POWER},
    Model::kShiftRegisters    {&Model::getNumSrlSlices,     &Model::calculateSrlClkCapFreq,     Params::SRL_CLK_POWER};
// clang-format on

#define ZELM_MODEL ZelmOrvaneCleClkModel
#define ZELM_CELL_ROWS "fabric/ZelmOrvaneCleClkCells.def"
#include "framework/ZelmCellBodies.inc"

void ZelmOrvaneCleClkModel::pullOutputs(Params& params, const Data& data) const
{
    calculateCleClockPower(params, data);
    calculateModulationPower(params, data);
    calculateFfClkPower(params, data);
    calculateImuxClkPower(params, data);
    calculateLutramClkPower(params, data);
    calculateSrlClkPower(params, data);
}

float ZelmOrvaneCleClkModel::power(const Load& load, Params& params, const Data& data) const
{
    return once(params[load.cell], [&] {
        const float vccint = getVccint(params, data);
        const float slices = static_cast<float>((this->*load.slices)(params, data));
        const float capFreq = (this->*load.capFreq)(params, data);
        return zelm::capFreqPower(vccint, slices * capFreq);
    });
}

float ZelmOrvaneCleClkModel::calculateModulationCapFreq(Params& params, const Data& data) const
{
    return once(params[Params::MODULATION_CAP_FREQ], [&] {
        const float delay = data.findClkCap("PROG_DELAY");
        const float delayUsed = getProbPdelayUsed(params, data);
        const float buffer = data.findClkCap("CLKIN_BUF");
        const double dualEdge = getProbDualEdgeClocking(params, data);
        const double modeSelect = data.findClkCap("CLK_MODE_SEL");
        const double clockFreq = getClockFreq(params, data);
        const double behindModeSelect = delay * delayUsed + buffer;
        // Dual-edge clocking halves the frequency behind the mode select, not at it.
        return (behindModeSelect * (1.0 - dualEdge * 0.5) + modeSelect) * clockFreq;
    });
}

float ZelmOrvaneCleClkModel::calculateFfClkCapFreq(Params& params, const Data& data) const
{
    return once(params[Params::FF_CLK_CAP_FREQ], [&] {
        const float control = data.findClkCap("CLEFF_CLK_CTRL");
        const float groups = getAvgCeFfGroupsPerSlice(params, data);
        const float enabled = getProbSliceCe(params, data);
        const float delay = data.findClkCap("CLEFF_CLK_DEL");
        const float clockFreq = getClockFreq(params, data);
        return (control * groups * enabled + delay) * clockFreq;
    });
}

float ZelmOrvaneCleClkModel::calculateImuxClkCapFreq(Params& params, const Data& data) const
{
    return once(params[Params::IMUX_CLK_CAP_FREQ], [&] {
        const float dataControl = data.findClkCap("IMUX_DATA_CTRL");
        const float groups = getAvgCeImuxGroupsPerSlice(params, data);
        const float enabled = getProbSliceCe(params, data);
        const float controlUsed = getProbCtrlImuxUsed(params, data);
        const float controlControl = data.findClkCap("IMUX_CTRL_CTRL");
        const float setReset = data.findClkCap("IMUX_CLK_SR");
        const float clockFreq = getClockFreq(params, data);
        return (dataControl * groups * enabled + controlUsed * controlControl + setReset) * clockFreq;
    });
}

float ZelmOrvaneCleClkModel::calculateLutramClkCapFreq(Params& params, const Data& data) const
{
    return once(params[Params::LUTRAM_CLK_CAP_FREQ],
                [&] { return data.findClkCap("C_WCLKRAM") * getClockFreq(params, data); });
}

float ZelmOrvaneCleClkModel::calculateSrlClkCapFreq(Params& params, const Data& data) const
{
    return once(params[Params::SRL_CLK_CAP_FREQ],
                [&] { return data.findClkCap("C_SCLK") * getClockFreq(params, data); });
}

float ZelmOrvaneCleClkModel::calculateCleClockPower(Params& params, const Data& data) const
{
    return once(params[Params::CLE_CLOCK_POWER], [&] {
        const float modulation = calculateModulationPower(params, data);
        const float registers = calculateFfClkPower(params, data);
        const float inputMultiplexers = calculateImuxClkPower(params, data);
        const float lutMemories = calculateLutramClkPower(params, data);
        const float shiftRegisters = calculateSrlClkPower(params, data);
        const float sum = modulation + registers + inputMultiplexers + lutMemories + shiftRegisters;
        // The parts are in uW, the total in mW.
        return static_cast<double>(sum) * 0.001;
    });
}

#include "fabric/ZelmOrvaneIriClkModel.h"

#include "fabric/ZelmInterfaceCurrent.h"
#include "framework/ZelmModelBlockImpl.h"

template class ZelmModelBlock<ZelmOrvaneIriClkModel, ZelmOrvaneIriClkParams, ZelmOrvaneIriClkData>;

#define ZELM_MODEL ZelmOrvaneIriClkModel
#define ZELM_CELL_ROWS "fabric/ZelmOrvaneIriClkCells.def"
#include "framework/ZelmCellBodies.inc"

void ZelmOrvaneIriClkModel::pullOutputs(Params& params, const Data& data) const
{
    calculateClockPower(params, data);
    calculateIriClockPower(params, data);
    calculateCnodeCtrlmuxClockPower(params, data);
}

// In milliamperes, of a table in nanoamperes.
double ZelmOrvaneIriClkModel::nodeCurrent(std::string_view node, Params& params, const Data& data) const
{
    const double nanoamperes = zelm::interfaceCurrent(data, node, getClockFreq(params, data));
    return nanoamperes * 1e-6;
}

float ZelmOrvaneIriClkModel::calculateCurrentModeIndependent(Params& params, const Data& data) const
{
    return once(params[Params::CURRENT_MODE_INDEPENDENT], [&] {
        const double testMux = nodeCurrent("CTRL_TST_MUX", params, data);
        const double optionalInverter = nodeCurrent("CLK_OPT_INV", params, data);
        const double inverter = nodeCurrent("MC_INV", params, data);
        return testMux + (optionalInverter + inverter);
    });
}

float ZelmOrvaneIriClkModel::calculateCurrentPdelayOnLatchUsed(Params& params, const Data& data) const
{
    return once(params[Params::CURRENT_PDELAY_ON_LATCH_USED],
                [&] { return nodeCurrent("PDELAY_ON_LATCH_USED", params, data); });
}

float ZelmOrvaneIriClkModel::calculateCurrentPdelayOnBypassOnly(Params& params, const Data& data) const
{
    return once(params[Params::CURRENT_PDELAY_ON_BYPASS_ONLY],
                [&] { return nodeCurrent("PDELAY_ON_BYPASS_ONLY", params, data); });
}

float ZelmOrvaneIriClkModel::calculateIriClockPower(Params& params, const Data& data) const
{
    return once(params[Params::IRI_CLOCK_POWER], [&] {
        const float vccint = getVccint(params, data);
        const float simulated = data.findFactor("SIM_VOLTAGE");
        const float latchUsed = calculateCurrentPdelayOnLatchUsed(params, data);
        const float modeIndependent = calculateCurrentModeIndependent(params, data);
        const float latchedQuads = static_cast<float>(getNumLatchedQuadsPdelayOn(params, data));
        const float bypassOnly = calculateCurrentPdelayOnBypassOnly(params, data);
        const float bypassQuads = static_cast<float>(getNumBypassQuadsPdelayOn(params, data));
        const double ratio = zelm::ratioOrZero(vccint, simulated);
        const float latched = (latchUsed + modeIndependent) * latchedQuads;
        const float bypassed = (bypassOnly + modeIndependent) * bypassQuads;
        const double current = bypassed + latched;
        return static_cast<double>(vccint) * ratio * current;
    });
}

float ZelmOrvaneIriClkModel::calculateCnodeCtrlmuxClockPower(Params& params, const Data& data) const
{
    return once(params[Params::CNODE_CTRLMUX_CLOCK_POWER], [&] {
        const double clockFreq = getClockFreq(params, data);
        const double vccint = getVccint(params, data);
        const double capacitance = data.findCapacitance("CTRLMUX") + data.findCapacitance("CNODE");
        const double fanout = getNonCleSiteFanout(params, data);
        // MHz to Hz, fF to F, W to mW.
        const double perFemtofarad = clockFreq * 1e6 * vccint * vccint * 1e-15 * 1000.0;
        return capacitance * perFemtofarad * fanout;
    });
}

float ZelmOrvaneIriClkModel::calculateClockPower(Params& params, const Data& data) const
{
    return once(params[Params::CLOCK_POWER], [&] {
        const float quads = calculateIriClockPower(params, data);
        const float otherLoads = calculateCnodeCtrlmuxClockPower(params, data);
        return quads + otherLoads;
    });
}

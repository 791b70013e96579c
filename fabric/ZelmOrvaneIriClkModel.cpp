#include "fabric/ZelmOrvaneIriClkModel.h"

#include "fabric/ZelmInterfaceCurrent.h"
#include "framework/ZelmModelBlockImpl.h"

#define ZELM_MODEL ZelmOrvaneIriClkModel
#define ZELM_CELL_ROWS "fabric/ZelmOrvaneIriClkCells.def"
#define ZELM_TABLE_ROWS "fabric/ZelmOrvaneIriClkTables.def"

struct ZelmOrvaneIriClkModel::Sheet : zelm::Sheet<ZelmOrvaneIriClkModel> {
#include "framework/ZelmAccessors.inc"

    void pullOutputs() const
    {
        ClockPower();
        IriClockPower();
        CnodeCtrlmuxClockPower();
    }

    // In milliamperes, of a table in nanoamperes.
    double nodeCurrent(const Key& node) const
    {
        const double nanoamperes = zelm::interfaceCurrent(*this, node, ClockFreq());
        return nanoamperes * 1e-6;
    }

    double computeCurrentModeIndependent() const
    {
        const double testMux = nodeCurrent("CTRL_TST_MUX");
        const double optionalInverter = nodeCurrent("CLK_OPT_INV");
        const double inverter = nodeCurrent("MC_INV");
        return testMux + (optionalInverter + inverter);
    }

    double computeCurrentPdelayOnLatchUsed() const
    {
        return nodeCurrent("PDELAY_ON_LATCH_USED");
    }

    double computeCurrentPdelayOnBypassOnly() const
    {
        return nodeCurrent("PDELAY_ON_BYPASS_ONLY");
    }

    double computeIriClockPower() const
    {
        const float vccint = Vccint();
        const float simulated = findFactor("SIM_VOLTAGE");
        const float latchUsed = CurrentPdelayOnLatchUsed();
        const float modeIndependent = CurrentModeIndependent();
        const float latchedQuads = static_cast<float>(NumLatchedQuadsPdelayOn());
        const float bypassOnly = CurrentPdelayOnBypassOnly();
        const float bypassQuads = static_cast<float>(NumBypassQuadsPdelayOn());
        const double ratio = zelm::ratioOrZero(vccint, simulated);
        const float latched = (latchUsed + modeIndependent) * latchedQuads;
        const float bypassed = (bypassOnly + modeIndependent) * bypassQuads;
        const double current = bypassed + latched;
        return static_cast<double>(vccint) * ratio * current;
    }

    double computeCnodeCtrlmuxClockPower() const
    {
        const double clockFreq = ClockFreq();
        const double vccint = Vccint();
        const double capacitance = findCapacitance("CTRLMUX") + findCapacitance("CNODE");
        const double fanout = NonCleSiteFanout();
        // MHz to Hz, fF to F, W to mW.
        const double perFemtofarad = clockFreq * 1e6 * vccint * vccint * 1e-15 * 1000.0;
        return capacitance * perFemtofarad * fanout;
    }

    float computeClockPower() const
    {
        const float quads = IriClockPower();
        const float otherLoads = CnodeCtrlmuxClockPower();
        return quads + otherLoads;
    }
};

#include "framework/ZelmModelBodies.inc"

#include "clocking/ZelmOrvaneRuskModel.h"

#include "clocking/ZelmClockGeneratorSheet.h"
#include "framework/ZelmModelBlockImpl.h"

#define ZELM_MODEL ZelmOrvaneRuskModel
#define ZELM_CELL_ROWS "clocking/ZelmOrvaneRuskCells.def"
#define ZELM_TABLE_ROWS "clocking/ZelmOrvaneRuskTables.def"

struct ZelmOrvaneRuskModel::Sheet : ZelmClockGeneratorSheet<ZelmOrvaneRuskModel> {
#include "framework/ZelmAccessors.inc"

    static constexpr int kOutputs = 4;

    void pullOutputs() const
    {
        VccintioPwr();
        VccauxPwr();
    }

    // The divide of the I/O PHY clock has no value for "not used": 1 counts.
    float computeKelpClock() const
    {
        const float vco = Fvco();
        const float divide = static_cast<float>(KelpDivide());
        return zelm::ratioOrZero(vco, divide);
    }

    // ---- VCCAUX ----

    // The frequency compensation, an IVCCINT row, hangs on VCCAUX in this PLL.
    float computeVccAuxBaseCurrent() const
    {
        return sumOfRows(
            {"IVCC_AUX_DVDD_REGULATOR", "IVCC_AUX_CHARGE_PUMP", "IVCC_AUX_LFDRV_KVCO", "IVCCINT_FREQ_COMP"});
    }

    float computeVccAuxVcoCurrent() const
    {
        const float ring = row("IVCC_AUX_VCO_RING");
        const float levelShifter = row("IVCC_AUX_VCO_RING_VCO_LS");
        return (ring + 4.0f * levelShifter) * Fvco();
    }

    float computeVccAuxKelpClockCurrent() const
    {
        return KelpClock() * row("IAVDD_KELP_OUTPUT_DRIVER");
    }

    float computeVccAuxIntCurrent() const
    {
        const float base = VccAuxBaseCurrent();
        const float vco = VccAuxVcoCurrent();
        const float kelp = VccAuxKelpClockCurrent();
        return lessCalibrationOffset(base + vco + kelp);
    }

    float computeVccauxPwr() const
    {
        const float current = VccAuxIntCurrent();
        return powerAt(Vccaux(), current);
    }

    // ---- VCCINTIO ----

    float computeVccintioBaseCurrent() const
    {
        return row("IVCCINT_CTRL_LOGIC");
    }

    float computeVccintioClockfboutCurrent() const
    {
        const float multiply = static_cast<float>(MCounter());
        const float clock = Clockfbout();
        return multiply * clock * row("IVCCINT_OUTPUT_COUNTERS");
    }

    float outputCurrent(int output) const
    {
        const float divide = static_cast<float>(divideOf(output));
        const float perDivide = sumOfRows({"IVCCINT_INTERPOLATOR", "IVCCINT_OUTPUT_COUNTERS"});
        const float driver = row("IVCCINT_OUTPUT_DRIVER");
        const float clock = clockOf(output);
        return divide == 1.0f ? 0.0f : (perDivide * divide + driver) * clock;
    }

    float computeVccintioKelpClkCurrent() const
    {
        return KelpClock() * row("IVCCINT_KELP_OUTPUT_DRIVER");
    }

    float computeVccintioIntCurrent() const
    {
        const float base = VccintioBaseCurrent();
        const float input = VccintioPfdClockCurrent();
        const float feedback = VccintioClockfboutCurrent();
        float sum = base + input + feedback;
        for (int output = 0; output < kOutputs; ++output)
            sum += value(zelm::cellBehind(Params::VCCINTIO_CLKOUT0_CURRENT, output));
        sum += VccintioKelpClkCurrent();
        return sum * row("FUDGE_FACTOR_INT");
    }

    float computeVccintioPwr() const
    {
        const float current = VccintioIntCurrent();
        return powerAt(Vccintio(), row("VCCINTIO_SIM"), current);
    }

    float computeVccintioPfdClockCurrent() const
    {
        return inputCurrent();
    }
};

#include "framework/ZelmModelBodies.inc"

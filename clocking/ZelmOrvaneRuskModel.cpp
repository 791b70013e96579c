#include "clocking/ZelmOrvaneRuskModel.h"

#include "clocking/ZelmClockGeneratorSheet.h"
#include "framework/ZelmModelBlockImpl.h"

#define ZELM_MODEL ZelmOrvaneRuskModel
#define ZELM_CELL_ROWS "clocking/ZelmOrvaneRuskCells.def"
#define ZELM_TABLE_ROWS "clocking/ZelmOrvaneRuskTables.def"

namespace {

using Params = ZelmOrvaneRuskParams;

struct Output {
    Params::IntEnum divide;
    Params::FloatEnum outputClock;
    Params::FloatEnum outputCurrent;
};
// clang-format off
constexpr Output kOutputs[] = {
    {Params::CLKOUT0_DIVIDE, Params::CLOCKOUT0, Params::VCCINTIO_CLKOUT0_CURRENT},
    {Params::CLKOUT1_DIVIDE, Params::CLOCKOUT1, Params::VCCINTIO_CLKOUT1_CURRENT},
    {Params::CLKOUT2_DIVIDE, Params::CLOCKOUT2, Params::VCCINTIO_CLKOUT2_CURRENT},
    {Params::CLKOUT3_DIVIDE, Params::CLOCKOUT3, Params::VCCINTIO_CLKOUT3_CURRENT},
};
// clang-format on

} // namespace

struct ZelmOrvaneRuskModel::Sheet : ZelmClockGeneratorSheet<ZelmOrvaneRuskModel> {
#include "framework/ZelmAccessors.inc"

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

    float outputCurrent(const Output& output) const
    {
        const float divide = static_cast<float>(value(output.divide));
        const float perDivide = sumOfRows({"IVCCINT_INTERPOLATOR", "IVCCINT_OUTPUT_COUNTERS"});
        const float driver = row("IVCCINT_OUTPUT_DRIVER");
        const float clock = value(output.outputClock);
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
        for (const Output& output : kOutputs)
            sum += value(output.outputCurrent);
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

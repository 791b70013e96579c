#include "clocking/ZelmOrvaneVekoModel.h"

#include "clocking/ZelmClockGeneratorSheet.h"
#include "framework/ZelmModelBlockImpl.h"

#define ZELM_MODEL ZelmOrvaneVekoModel
#define ZELM_CELL_ROWS "clocking/ZelmOrvaneVekoCells.def"
#define ZELM_TABLE_ROWS "clocking/ZelmOrvaneVekoTables.def"

namespace {

using Params = ZelmOrvaneVekoParams;

struct Output {
    Params::IntEnum divide;
    Params::FloatEnum outputClock;
    Params::FloatEnum outputCurrent;
};
// clang-format off
constexpr Output kOutputs[] = {
    {Params::CLKOUT0_DIVIDE, Params::CLOCKOUT0, Params::VCCRAM_CLKOUT0_CURRENT},
    {Params::CLKOUT1_DIVIDE, Params::CLOCKOUT1, Params::VCCRAM_CLKOUT1_CURRENT},
    {Params::CLKOUT2_DIVIDE, Params::CLOCKOUT2, Params::VCCRAM_CLKOUT2_CURRENT},
    {Params::CLKOUT3_DIVIDE, Params::CLOCKOUT3, Params::VCCRAM_CLKOUT3_CURRENT},
    {Params::CLKOUT4_DIVIDE, Params::CLOCKOUT4, Params::VCCRAM_CLKOUT4_CURRENT},
    {Params::CLKOUT5_DIVIDE, Params::CLOCKOUT5, Params::VCCRAM_CLKOUT5_CURRENT},
    {Params::CLKOUT6_DIVIDE, Params::CLOCKOUT6, Params::VCCRAM_CLKOUT6_CURRENT},
};
// clang-format on

} // namespace

struct ZelmOrvaneVekoModel::Sheet : ZelmClockGeneratorSheet<ZelmOrvaneVekoModel> {
#include "framework/ZelmAccessors.inc"

    void pullOutputs() const
    {
        VccramPwr();
        VccauxPwr();
    }

    // ---- VCCAUX ----

    float computeVccauxBaseCurrent() const
    {
        return sumOfRows({"IVCCAUX_AVDD_REGULATOR", "IVCCAUX_CHARGE_PUMP", "IVCCAUX_LFDRV_KVCO"});
    }

    float computeVccauxVcoCurrent() const
    {
        return Fvco() * row("IVCCAUX_VCO_RING_pMHz");
    }

    float computeVccauxIntCurrent() const
    {
        const float base = VccauxBaseCurrent();
        const float vco = VccauxVcoCurrent();
        return lessCalibrationOffset(base + vco);
    }

    float computeVccauxPwr() const
    {
        const float current = VccauxIntCurrent();
        return powerAt(Vccaux(), current);
    }

    // ---- VCCRAM; its rows are called IVCCINT, the rail they were measured on ----

    float computeVccramBaseCurrent() const
    {
        return sumOfRows({"IVCCINT_FREQ_COMP", "IVCCINT_CTRL_LOGIC"});
    }

    float computeVccramVcoCurrent() const
    {
        return Fvco() * 4.0f * row("IVCCINT_VCO_RING_pMHz");
    }

    float computeVccramClockfboutCurrent() const
    {
        const float multiply = static_cast<float>(MCounter());
        const float interpolator = row("IVCCINT_INTERPOLATOR");
        const float counters = row("IVCCINT_OUTPUT_COUNTERS");
        const float driver = row("IVCCINT_OUTPUT_DRIVER");
        const bool spread = SpreadSpectrum() == "ON";
        const float spreading = row("IVCCINT_SPREAD_SPECTRUM");
        const float clock = Clockfbout();
        return (multiply * interpolator + multiply * counters + driver + (spread ? spreading : 0.0f)) * clock;
    }

    float outputCurrent(const Output& output) const
    {
        const float divide = static_cast<float>(value(output.divide));
        const float interpolator = row("IVCCINT_INTERPOLATOR");
        const float counters = row("IVCCINT_OUTPUT_COUNTERS");
        const float driver = row("IVCCINT_OUTPUT_DRIVER");
        const float clock = value(output.outputClock);
        return divide == 1.0f ? 0.0f : (divide * interpolator + divide * counters + driver) * clock;
    }

    float computeVccramIntCurrent() const
    {
        const float base = VccramBaseCurrent();
        const float vco = VccramVcoCurrent();
        const float input = VccramPfdClockCurrent();
        const float feedback = VccramClockfboutCurrent();
        float sum = base + vco + input + feedback;
        for (const Output& output : kOutputs)
            sum += value(output.outputCurrent);
        return sum * row("FUDGE_FACTOR_INT");
    }

    float computeVccramPwr() const
    {
        const float current = VccramIntCurrent();
        return powerAt(Vccram(), row("VCCRAM_SIM"), current);
    }

    float computeVccramPfdClockCurrent() const
    {
        return inputCurrent();
    }
};

#include "framework/ZelmModelBodies.inc"

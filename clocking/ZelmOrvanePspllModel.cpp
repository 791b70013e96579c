#include "clocking/ZelmOrvanePspllModel.h"

#include "clocking/ZelmClockGeneratorSheet.h"
#include "framework/ZelmModelBlockImpl.h"

#include <cmath>

#define ZELM_MODEL ZelmOrvanePspllModel
#define ZELM_CELL_ROWS "clocking/ZelmOrvanePspllCells.def"
#define ZELM_TABLE_ROWS "clocking/ZelmOrvanePspllTables.def"

struct ZelmOrvanePspllModel::Sheet : ZelmClockGeneratorSheet<ZelmOrvanePspllModel> {
#include "framework/ZelmAccessors.inc"

    void pullOutputs() const
    {
        VccAuxCurrent();
        VccintCurrent();
    }

    // ---- Frequencies; the input isn't divided, D_COUNTER or not ----

    float computePfdClock() const
    {
        return InputFrequency();
    }

    float computeFvco() const
    {
        const float input = InputFrequency();
        const int multiply = MCounter();
        return input * static_cast<float>(multiply);
    }

    int computeClkoutDivide() const
    {
        const double exponent = ClkoutDivideExp();
        return zelm::truncate(std::pow(2.0, exponent));
    }

    float computeClockout() const
    {
        const float vco = Fvco();
        const int divide = ClkoutDivide();
        return zelm::ratioOrZero(vco, static_cast<float>(divide));
    }

    // ---- VCC_AUX ----

    float computeVccAuxBaseCurrent() const
    {
        return sumOfRows({"IVCC_AUX_AVDD_REGULATOR", "IVCC_AUX_CHARGE_PUMP", "IVCC_AUX_LFDRV_KVCO"});
    }

    float computeVccAuxVcoCurrent() const
    {
        return Fvco() * row("IVCC_AUX_VCO_RING");
    }

    float computeVccAuxIntCurrent() const
    {
        const float base = VccAuxBaseCurrent();
        const float vco = VccAuxVcoCurrent();
        return base + vco;
    }

    float computeVccAuxCurrent() const
    {
        return row("FUDGE_FACTOR") * VccAuxIntCurrent();
    }

    // ---- VCCINT ----

    float computeVccintBaseCurrent() const
    {
        return sumOfRows({"IVCCINT_FREQ_COMP", "IVCCINT_CTRL_LOGIC"});
    }

    float computeVccintVcoCurrent() const
    {
        return Fvco() * 4.0f * row("IVCCINT_VCO_RING_VCO_LS");
    }

    // The driver's row is in the plural here alone.
    float computeVccintClkoutCurrent() const
    {
        const float counters = row("IVCCINT_OUTPUT_COUNTERS");
        const float divide = static_cast<float>(ClkoutDivide());
        const float drivers = row("IVCCINT_OUTPUT_DRIVERS");
        const float clock = Clockout();
        return (counters * divide + drivers) * clock;
    }

    float computeVccintIntCurrent() const
    {
        const float base = VccintBaseCurrent();
        const float vco = VccintVcoCurrent();
        const float input = VccintPfdClockCurrent();
        const float output = VccintClkoutCurrent();
        return base + vco + input + output;
    }

    double computeVccintCurrent() const
    {
        const float current = VccintIntCurrent();
        const double calibrated = current * row("FUDGE_FACTOR") * row("VCCINT_SIM");
        return calibrated / 0.925;
    }

    float computeVccintPfdClockCurrent() const
    {
        return inputCurrent();
    }
};

#include "framework/ZelmModelBodies.inc"

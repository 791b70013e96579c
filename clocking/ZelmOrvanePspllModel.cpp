#include "clocking/ZelmOrvanePspllModel.h"

#include "framework/ZelmModelBlockImpl.h"

#include <cmath>

template class ZelmModelBlock<ZelmOrvanePspllModel, ZelmOrvanePspllParams, ZelmOrvanePspllData>;

#define ZELM_MODEL ZelmOrvanePspllModel
#define ZELM_CELL_ROWS "clocking/ZelmOrvanePspllCells.def"
#include "framework/ZelmCellBodies.inc"

void ZelmOrvanePspllModel::pullOutputs(Params& params, const Data& data) const
{
    calculateVccAuxCurrent(params, data);
    calculateVccintCurrent(params, data);
}

// ---- Frequencies; the input isn't divided, D_COUNTER or not ----

float ZelmOrvanePspllModel::calculatePfdClock(Params& params, const Data& data) const
{
    return once(params[Params::PFD_CLOCK], [&] { return getInputFrequency(params, data); });
}

float ZelmOrvanePspllModel::calculateFvco(Params& params, const Data& data) const
{
    return once(params[Params::FVCO], [&] {
        const float input = getInputFrequency(params, data);
        const int multiply = getMCounter(params, data);
        return input * static_cast<float>(multiply);
    });
}

int ZelmOrvanePspllModel::calculateClkoutDivide(Params& params, const Data& data) const
{
    return once(params[Params::CLKOUT_DIVIDE], [&] {
        const double exponent = getClkoutDivideExp(params, data);
        return zelm::truncate(std::pow(2.0, exponent));
    });
}

float ZelmOrvanePspllModel::calculateClockout(Params& params, const Data& data) const
{
    return once(params[Params::CLOCKOUT], [&] {
        const float vco = calculateFvco(params, data);
        const int divide = calculateClkoutDivide(params, data);
        return zelm::ratioOrZero(vco, static_cast<float>(divide));
    });
}

// ---- VCC_AUX ----

float ZelmOrvanePspllModel::calculateVccAuxBaseCurrent(Params& params, const Data& data) const
{
    return once(params[Params::VCC_AUX_BASE_CURRENT], [&] {
        return sumOfRows(data, {"IVCC_AUX_AVDD_REGULATOR", "IVCC_AUX_CHARGE_PUMP", "IVCC_AUX_LFDRV_KVCO"});
    });
}

float ZelmOrvanePspllModel::calculateVccAuxVcoCurrent(Params& params, const Data& data) const
{
    return once(params[Params::VCC_AUX_VCO_CURRENT],
                [&] { return calculateFvco(params, data) * row(data, "IVCC_AUX_VCO_RING"); });
}

float ZelmOrvanePspllModel::calculateVccAuxIntCurrent(Params& params, const Data& data) const
{
    return once(params[Params::VCC_AUX_INT_CURRENT], [&] {
        const float base = calculateVccAuxBaseCurrent(params, data);
        const float vco = calculateVccAuxVcoCurrent(params, data);
        return base + vco;
    });
}

float ZelmOrvanePspllModel::calculateVccAuxCurrent(Params& params, const Data& data) const
{
    return once(params[Params::VCC_AUX_CURRENT],
                [&] { return row(data, "FUDGE_FACTOR") * calculateVccAuxIntCurrent(params, data); });
}

// ---- VCCINT ----

float ZelmOrvanePspllModel::calculateVccintBaseCurrent(Params& params, const Data& data) const
{
    return once(params[Params::VCCINT_BASE_CURRENT], [&] {
        return sumOfRows(data, {"IVCCINT_FREQ_COMP", "IVCCINT_CTRL_LOGIC"});
    });
}

float ZelmOrvanePspllModel::calculateVccintVcoCurrent(Params& params, const Data& data) const
{
    return once(params[Params::VCCINT_VCO_CURRENT],
                [&] { return calculateFvco(params, data) * 4.0f * row(data, "IVCCINT_VCO_RING_VCO_LS"); });
}

// The driver's row is in the plural here alone.
float ZelmOrvanePspllModel::calculateVccintClkoutCurrent(Params& params, const Data& data) const
{
    return once(params[Params::VCCINT_CLKOUT_CURRENT], [&] {
        const float counters = row(data, "IVCCINT_OUTPUT_COUNTERS");
        const float divide = static_cast<float>(calculateClkoutDivide(params, data));
        const float drivers = row(data, "IVCCINT_OUTPUT_DRIVERS");
        const float clock = calculateClockout(params, data);
        return (counters * divide + drivers) * clock;
    });
}

float ZelmOrvanePspllModel::calculateVccintIntCurrent(Params& params, const Data& data) const
{
    return once(params[Params::VCCINT_INT_CURRENT], [&] {
        const float base = calculateVccintBaseCurrent(params, data);
        const float vco = calculateVccintVcoCurrent(params, data);
        const float input = calculateVccintPfdClockCurrent(params, data);
        const float output = calculateVccintClkoutCurrent(params, data);
        return base + vco + input + output;
    });
}

float ZelmOrvanePspllModel::calculateVccintCurrent(Params& params, const Data& data) const
{
    return once(params[Params::VCCINT_CURRENT], [&] {
        const float current = calculateVccintIntCurrent(params, data);
        const double calibrated = current * row(data, "FUDGE_FACTOR") * row(data, "VCCINT_SIM");
        return calibrated / 0.925;
    });
}

#include "clocking/ZelmOrvaneRuskModel.h"

#include "framework/ZelmModelBlockImpl.h"

template class ZelmModelBlock<ZelmOrvaneRuskModel, ZelmOrvaneRuskParams, ZelmOrvaneRuskData>;

constinit const ZelmOrvaneRuskModel::Output ZelmOrvaneRuskModel::kOutputs[] = {
    {&ZelmOrvaneRuskModel::getClkout0Divide, 0},
    {&ZelmOrvaneRuskModel::getClkout1Divide, 1},
    {&ZelmOrvaneRuskModel::getClkout2Divide, 2},
    {&ZelmOrvaneRuskModel::getClkout3Divide, 3}};

#define ZELM_MODEL ZelmOrvaneRuskModel
#define ZELM_CELL_ROWS "clocking/ZelmOrvaneRuskCells.def"
#include "framework/ZelmCellBodies.inc"

void ZelmOrvaneRuskModel::pullOutputs(Params& params, const Data& data) const
{
    calculateVccintioPwr(params, data);
    calculateVccauxPwr(params, data);
}

// The divide of the I/O PHY clock has no value for "not used": 1 counts.
float ZelmOrvaneRuskModel::calculateKelpClock(Params& params, const Data& data) const
{
    return once(params[Params::KELP_CLOCK], [&] {
        const float vco = calculateFvco(params, data);
        const float divide = static_cast<float>(getKelpDivide(params, data));
        return zelm::ratioOrZero(vco, divide);
    });
}

// ---- VCCAUX ----

// The frequency compensation, an IVCCINT row, hangs on VCCAUX in this PLL.
float ZelmOrvaneRuskModel::calculateVccAuxBaseCurrent(Params& params, const Data& data) const
{
    return once(params[Params::VCC_AUX_BASE_CURRENT], [&] {
        return sumOfRows(
            data, {"IVCC_AUX_DVDD_REGULATOR", "IVCC_AUX_CHARGE_PUMP", "IVCC_AUX_LFDRV_KVCO", "IVCCINT_FREQ_COMP"});
    });
}

float ZelmOrvaneRuskModel::calculateVccAuxVcoCurrent(Params& params, const Data& data) const
{
    return once(params[Params::VCC_AUX_VCO_CURRENT], [&] {
        const float ring = row(data, "IVCC_AUX_VCO_RING");
        const float levelShifter = row(data, "IVCC_AUX_VCO_RING_VCO_LS");
        return (ring + 4.0f * levelShifter) * calculateFvco(params, data);
    });
}

float ZelmOrvaneRuskModel::calculateVccAuxKelpClockCurrent(Params& params, const Data& data) const
{
    return once(params[Params::VCC_AUX_KELP_CLOCK_CURRENT],
                [&] { return calculateKelpClock(params, data) * row(data, "IAVDD_KELP_OUTPUT_DRIVER"); });
}

float ZelmOrvaneRuskModel::calculateVccAuxIntCurrent(Params& params, const Data& data) const
{
    return once(params[Params::VCC_AUX_INT_CURRENT], [&] {
        const float base = calculateVccAuxBaseCurrent(params, data);
        const float vco = calculateVccAuxVcoCurrent(params, data);
        const float kelp = calculateVccAuxKelpClockCurrent(params, data);
        return lessCalibrationOffset(base + vco + kelp, data);
    });
}

float ZelmOrvaneRuskModel::calculateVccauxPwr(Params& params, const Data& data) const
{
    return once(params[Params::VCCAUX_PWR], [&] {
        const float current = calculateVccAuxIntCurrent(params, data);
        return powerAt(getVccaux(params, data), current, data);
    });
}

// ---- VCCINTIO ----

float ZelmOrvaneRuskModel::calculateVccintioBaseCurrent(Params& params, const Data& data) const
{
    return once(params[Params::VCCINTIO_BASE_CURRENT], [&] { return row(data, "IVCCINT_CTRL_LOGIC"); });
}

float ZelmOrvaneRuskModel::calculateVccintioClockfboutCurrent(Params& params, const Data& data) const
{
    return once(params[Params::VCCINTIO_CLOCKFBOUT_CURRENT], [&] {
        const float multiply = static_cast<float>(getMCounter(params, data));
        const float clock = calculateClockfbout(params, data);
        return multiply * clock * row(data, "IVCCINT_OUTPUT_COUNTERS");
    });
}

float ZelmOrvaneRuskModel::outputCurrent(const Output& output, Params& params, const Data& data) const
{
    return once(output.cell(params, Params::VCCINTIO_CLKOUT0_CURRENT), [&] {
        const float divide = static_cast<float>((this->*output.divide)(params, data));
        const float perDivide = sumOfRows(data, {"IVCCINT_INTERPOLATOR", "IVCCINT_OUTPUT_COUNTERS"});
        const float driver = row(data, "IVCCINT_OUTPUT_DRIVER");
        const float clock = outputClock(output, params, data);
        return divide == 1.0f ? 0.0f : (perDivide * divide + driver) * clock;
    });
}

float ZelmOrvaneRuskModel::calculateVccintioKelpClkCurrent(Params& params, const Data& data) const
{
    return once(params[Params::VCCINTIO_KELP_CLK_CURRENT],
                [&] { return calculateKelpClock(params, data) * row(data, "IVCCINT_KELP_OUTPUT_DRIVER"); });
}

float ZelmOrvaneRuskModel::calculateVccintioIntCurrent(Params& params, const Data& data) const
{
    return once(params[Params::VCCINTIO_INT_CURRENT], [&] {
        const float base = calculateVccintioBaseCurrent(params, data);
        const float input = calculateVccintioPfdClockCurrent(params, data);
        const float feedback = calculateVccintioClockfboutCurrent(params, data);
        float sum = base + input + feedback;
        for (const Output& output : kOutputs)
            sum += outputCurrent(output, params, data);
        sum += calculateVccintioKelpClkCurrent(params, data);
        return sum * row(data, "FUDGE_FACTOR_INT");
    });
}

float ZelmOrvaneRuskModel::calculateVccintioPwr(Params& params, const Data& data) const
{
    return once(params[Params::VCCINTIO_PWR], [&] {
        const float current = calculateVccintioIntCurrent(params, data);
        return powerAt(getVccintio(params, data), row(data, "VCCINTIO_SIM"), current, data);
    });
}

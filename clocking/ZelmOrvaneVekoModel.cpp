#include "clocking/ZelmOrvaneVekoModel.h"

#include "framework/ZelmModelBlockImpl.h"

template class ZelmModelBlock<ZelmOrvaneVekoModel, ZelmOrvaneVekoParams, ZelmOrvaneVekoData>;

constinit const ZelmOrvaneVekoModel::Output ZelmOrvaneVekoModel::kOutputs[] = {
    {&ZelmOrvaneVekoModel::getClkout0Divide, 0}, {&ZelmOrvaneVekoModel::getClkout1Divide, 1},
    {&ZelmOrvaneVekoModel::getClkout2Divide, 2}, {&ZelmOrvaneVekoModel::getClkout3Divide, 3},
    {&ZelmOrvaneVekoModel::getClkout4Divide, 4}, {&ZelmOrvaneVekoModel::getClkout5Divide, 5},
    {&ZelmOrvaneVekoModel::getClkout6Divide, 6}};

#define ZELM_MODEL ZelmOrvaneVekoModel
#define ZELM_CELL_ROWS "clocking/ZelmOrvaneVekoCells.def"
#include "framework/ZelmCellBodies.inc"

void ZelmOrvaneVekoModel::pullOutputs(Params& params, const Data& data) const
{
    calculateVccramPwr(params, data);
    calculateVccauxPwr(params, data);
}

// ---- VCCAUX ----

float ZelmOrvaneVekoModel::calculateVccauxBaseCurrent(Params& params, const Data& data) const
{
    return once(params[Params::VCCAUX_BASE_CURRENT], [&] {
        return sumOfRows(data, {"IVCCAUX_AVDD_REGULATOR", "IVCCAUX_CHARGE_PUMP", "IVCCAUX_LFDRV_KVCO"});
    });
}

float ZelmOrvaneVekoModel::calculateVccauxVcoCurrent(Params& params, const Data& data) const
{
    return once(params[Params::VCCAUX_VCO_CURRENT],
                [&] { return calculateFvco(params, data) * row(data, "IVCCAUX_VCO_RING_pMHz"); });
}

float ZelmOrvaneVekoModel::calculateVccauxIntCurrent(Params& params, const Data& data) const
{
    return once(params[Params::VCCAUX_INT_CURRENT], [&] {
        const float base = calculateVccauxBaseCurrent(params, data);
        const float vco = calculateVccauxVcoCurrent(params, data);
        return lessCalibrationOffset(base + vco, data);
    });
}

float ZelmOrvaneVekoModel::calculateVccauxPwr(Params& params, const Data& data) const
{
    return once(params[Params::VCCAUX_PWR], [&] {
        const float current = calculateVccauxIntCurrent(params, data);
        return powerAt(getVccaux(params, data), current, data);
    });
}

// ---- VCCRAM; its rows are called IVCCINT, the rail they were measured on ----

float ZelmOrvaneVekoModel::calculateVccramBaseCurrent(Params& params, const Data& data) const
{
    return once(params[Params::VCCRAM_BASE_CURRENT], [&] {
        return sumOfRows(data, {"IVCCINT_FREQ_COMP", "IVCCINT_CTRL_LOGIC"});
    });
}

float ZelmOrvaneVekoModel::calculateVccramVcoCurrent(Params& params, const Data& data) const
{
    return once(params[Params::VCCRAM_VCO_CURRENT],
                [&] { return calculateFvco(params, data) * 4.0f * row(data, "IVCCINT_VCO_RING_pMHz"); });
}

float ZelmOrvaneVekoModel::calculateVccramClockfboutCurrent(Params& params, const Data& data) const
{
    return once(params[Params::VCCRAM_CLOCKFBOUT_CURRENT], [&] {
        const float multiply = static_cast<float>(getMCounter(params, data));
        const float interpolator = row(data, "IVCCINT_INTERPOLATOR");
        const float counters = row(data, "IVCCINT_OUTPUT_COUNTERS");
        const float driver = row(data, "IVCCINT_OUTPUT_DRIVER");
        const bool spread = viewSpreadSpectrum(params, data) == "ON";
        const float spreading = row(data, "IVCCINT_SPREAD_SPECTRUM");
        const float clock = calculateClockfbout(params, data);
        return (multiply * interpolator + multiply * counters + driver + (spread ? spreading : 0.0f)) * clock;
    });
}

float ZelmOrvaneVekoModel::outputCurrent(const Output& output, Params& params, const Data& data) const
{
    return once(output.cell(params, Params::VCCRAM_CLKOUT0_CURRENT), [&] {
        const float divide = static_cast<float>((this->*output.divide)(params, data));
        const float interpolator = row(data, "IVCCINT_INTERPOLATOR");
        const float counters = row(data, "IVCCINT_OUTPUT_COUNTERS");
        const float driver = row(data, "IVCCINT_OUTPUT_DRIVER");
        const float clock = outputClock(output, params, data);
        return divide == 1.0f ? 0.0f : (divide * interpolator + divide * counters + driver) * clock;
    });
}

float ZelmOrvaneVekoModel::calculateVccramIntCurrent(Params& params, const Data& data) const
{
    return once(params[Params::VCCRAM_INT_CURRENT], [&] {
        const float base = calculateVccramBaseCurrent(params, data);
        const float vco = calculateVccramVcoCurrent(params, data);
        const float input = calculateVccramPfdClockCurrent(params, data);
        const float feedback = calculateVccramClockfboutCurrent(params, data);
        float sum = base + vco + input + feedback;
        for (const Output& output : kOutputs)
            sum += outputCurrent(output, params, data);
        return sum * row(data, "FUDGE_FACTOR_INT");
    });
}

float ZelmOrvaneVekoModel::calculateVccramPwr(Params& params, const Data& data) const
{
    return once(params[Params::VCCRAM_PWR], [&] {
        const float current = calculateVccramIntCurrent(params, data);
        return powerAt(getVccram(params, data), row(data, "VCCRAM_SIM"), current, data);
    });
}

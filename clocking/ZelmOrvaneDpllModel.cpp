#include "clocking/ZelmOrvaneDpllModel.h"

#include "framework/ZelmModelBlockImpl.h"

template class ZelmModelBlock<ZelmOrvaneDpllModel, ZelmOrvaneDpllParams, ZelmOrvaneDpllData>;

constinit const ZelmOrvaneDpllModel::Output ZelmOrvaneDpllModel::kOutputs[] = {
    {&ZelmOrvaneDpllModel::getClkout0Divide, 0},
    {&ZelmOrvaneDpllModel::getClkout1Divide, 1},
    {&ZelmOrvaneDpllModel::getClkout2Divide, 2},
    {&ZelmOrvaneDpllModel::getClkout3Divide, 3}};

#define ZELM_MODEL ZelmOrvaneDpllModel
#define ZELM_CELL_ROWS "clocking/ZelmOrvaneDpllCells.def"
#include "framework/ZelmCellBodies.inc"

void ZelmOrvaneDpllModel::pullOutputs(Params& params, const Data& data) const
{
    calculateVccintPwr(params, data);
    calculateVccramPwr(params, data);
    calculateVccauxPwr(params, data);
}

// ---- VCCAUX ----

float ZelmOrvaneDpllModel::calculateVccAuxBaseCurrent(Params& params, const Data& data) const
{
    return once(params[Params::VCC_AUX_BASE_CURRENT], [&] {
        return sumOfRows(data, {"IVCC_AUX_DVDD_REGULATOR", "IVCC_AUX_CTRL_LOGIC_SDM"});
    });
}

float ZelmOrvaneDpllModel::calculateVccAuxVcoCurrent(Params& params, const Data& data) const
{
    return once(params[Params::VCC_AUX_VCO_CURRENT], [&] {
        const float perMegahertz = sumOfRows(
            data, {"IVCC_AUX_DIGITAL_SYNC", "IVCC_AUX_VCO_RING", "IVCC_AUX_TDC", "IVCC_AUX_SYNTH_LOGIC_CLKV"});
        return perMegahertz * calculateFvco(params, data);
    });
}

// Unlike the other generators, its input counters see one edge of the input only.
float ZelmOrvaneDpllModel::calculateVccAuxPfdClockCurrent(Params& params, const Data& data) const
{
    return once(params[Params::VCC_AUX_PFD_CLOCK_CURRENT], [&] {
        const float pfdClock = calculatePfdClock(params, data);
        const float logic = row(data, "IVCC_AUX_SYNTH_LOGIC_CLKREF");
        const float input = getInputFrequency(params, data);
        const float counters = row(data, "IVCC_AUX_INPUT_COUNTERS");
        return pfdClock * logic + input * counters;
    });
}

float ZelmOrvaneDpllModel::counterCurrent(const Output& output, Params& params, const Data& data) const
{
    return once(output.cell(params, Params::VCC_AUX_CLKOUT0_CURRENT), [&] {
        const float divide = static_cast<float>((this->*output.divide)(params, data));
        const float clock = outputClock(output, params, data);
        const float perMegahertz = sumOfRows(data, {"IVCC_AUX_INTERPOLATOR", "IVCC_AUX_OUTPUT_COUNTERS"});
        return divide == 1.0f ? 0.0f : divide * clock * perMegahertz;
    });
}

float ZelmOrvaneDpllModel::calculateVccAuxIntCurrent(Params& params, const Data& data) const
{
    return once(params[Params::VCC_AUX_INT_CURRENT], [&] {
        const float base = calculateVccAuxBaseCurrent(params, data);
        const float vco = calculateVccAuxVcoCurrent(params, data);
        const float input = calculateVccAuxPfdClockCurrent(params, data);
        float sum = base + vco + input;
        for (const Output& output : kOutputs)
            sum += counterCurrent(output, params, data);
        return sum * row(data, "FUDGE_FACTOR_AUX");
    });
}

// At the characterisation voltage: the workbook leaves the input VCCAUX aside.
float ZelmOrvaneDpllModel::calculateVccauxPwr(Params& params, const Data& data) const
{
    return once(params[Params::VCCAUX_PWR], [&] {
        const float current = calculateVccAuxIntCurrent(params, data);
        return current * row(data, "FUDGE_FACTOR") * data.findCommonData("SIM_VOLTAGE", "VCCAUX");
    });
}

// ---- VCCINT and VCCRAM ----

float ZelmOrvaneDpllModel::calculateVccintBaseCurrent(Params& params, const Data& data) const
{
    return once(params[Params::VCCINT_BASE_CURRENT], [&] { return row(data, "IVCCINT_MISC"); });
}

// The oscillator and the phase detector draw from VCCAUX alone.
float ZelmOrvaneDpllModel::calculateVccintVcoCurrent(Params& params, const Data&) const
{
    return once(params[Params::VCCINT_VCO_CURRENT], [&] { return 0.0f; });
}

float ZelmOrvaneDpllModel::calculateVccintPfdClockCurrent(Params& params, const Data&) const
{
    return once(params[Params::VCCINT_PFD_CLOCK_CURRENT], [&] { return 0.0f; });
}

float ZelmOrvaneDpllModel::driverCurrent(const Output& output, Params& params, const Data& data) const
{
    return once(output.cell(params, Params::VCCINT_CLKOUT0_CURRENT),
                [&] { return outputClock(output, params, data) * row(data, "IVCCINT_OUTPUT_DRIVER"); });
}

float ZelmOrvaneDpllModel::calculateVccintIntCurrent(Params& params, const Data& data) const
{
    return once(params[Params::VCCINT_INT_CURRENT], [&] {
        const float base = calculateVccintBaseCurrent(params, data);
        const float vco = calculateVccintVcoCurrent(params, data);
        const float input = calculateVccintPfdClockCurrent(params, data);
        float sum = base + vco + input;
        for (const Output& output : kOutputs)
            sum += driverCurrent(output, params, data);
        return sum * row(data, "FUDGE_FACTOR_INT");
    });
}

// VCCRAM has no current of its own: both rails take the power from the current of VCCINT.
double ZelmOrvaneDpllModel::digitalPower(std::string_view rail, float volts, Params& params, const Data& data) const
{
    const float current = calculateVccintIntCurrent(params, data);
    const float simVolts = data.findCommonData("SIM_VOLTAGE", rail);
    const double calibrated = current * row(data, "FUDGE_FACTOR") * row(data, "VCCINT_SIM");
    return calibrated / 0.825 * simVolts * zelm::voltageFactor(volts, simVolts);
}

float ZelmOrvaneDpllModel::calculateVccintPwr(Params& params, const Data& data) const
{
    return once(params[Params::VCCINT_PWR],
                [&] { return digitalPower("VCCINT", getVccint(params, data), params, data); });
}

float ZelmOrvaneDpllModel::calculateVccramPwr(Params& params, const Data& data) const
{
    return once(params[Params::VCCRAM_PWR],
                [&] { return digitalPower("VCCRAM", getVccram(params, data), params, data); });
}

#include "device/ZelmOrvaneStaticModel.h"

#include "device/ZelmOrvaneStaticNetwork.h"

#include "framework/ZelmModelBlockImpl.h"

#include <cmath>

template class ZelmModelBlock<ZelmOrvaneStaticModel, ZelmOrvaneStaticParams, ZelmOrvaneStaticData>;

using namespace zelm::staticpower;

#define ZELM_MODEL ZelmOrvaneStaticModel
#define ZELM_CELL_ROWS "device/ZelmOrvaneStaticCells.def"
#include "framework/ZelmCellBodies.inc"

namespace {

// By the letters of TermA to TermE.
constexpr std::string_view kTermKeys[] = {"A", "B", "C", "CONST", "D", "E"};
constexpr std::string_view kVoltageKeys[] = {"C1", "C2"};

constexpr FloatCell curveCell(const Site& site, CurveCell which)
{
    return zelm::cellBehind(site.firstCurveCell, which);
}

constexpr FloatCell voltageCell(const Site& site, VoltageTerm which)
{
    return zelm::cellBehind(site.firstVoltageCell, which);
}

} // namespace

void ZelmOrvaneStaticModel::pullOutputs(Params& params, const Data& data) const
{
    for (const FloatCell cell : kOutputs)
        pull(cell, params, data);
}

float ZelmOrvaneStaticModel::valueOf(Params::FloatEnum cell, Params& params, const Data& data) const
{
    pull(cell, params, data);
    return params[cell];
}

int ZelmOrvaneStaticModel::valueOf(Params::IntEnum cell, Params& params, const Data& data) const
{
    pull(cell, params, data);
    return params[cell];
}

float ZelmOrvaneStaticModel::sumOf(const Addends& addends, float start, Params& params, const Data& data) const
{
    float sum = start;
    for (const FloatCell cell : addends)
        sum += valueOf(cell, params, data);
    return sum;
}

// ---- SKU and corner ----

std::string_view ZelmOrvaneStaticModel::viewSpeedGradeStr(Params& params, const Data& data) const
{
    return once(params[Params::SPEED_GRADE_STR], [&] { return "SPEED_" + getSpeedGrade(params, data); });
}

std::string_view ZelmOrvaneStaticModel::viewSkuName(Params& params, const Data& data) const
{
    return once(params[Params::SKU_NAME], [&] {
        const std::string_view speed = viewSpeedGradeStr(params, data);
        const std::string_view voltage = viewVoltageGrade(params, data);
        const std::string_view screen = viewPowerScreen(params, data);
        const std::string_view temperature = viewTempGrade(params, data);
        const std::string_view overDrive = viewOverDrive(params, data);
        return data.findSkuList(speed, voltage, screen, temperature, overDrive);
    });
}

std::string_view ZelmOrvaneStaticModel::viewVoltageCorner(Params& params, const Data&) const
{
    return once(params[Params::VOLTAGE_CORNER], [] { return "NOM"; });
}

// ---- Rails ----

std::string_view ZelmOrvaneStaticModel::rangeKey(const Rail& rail, Params& params, const Data&) const
{
    return once(params[rail.rangeKey], [&] { return rail.key; });
}

float ZelmOrvaneStaticModel::nominalVolts(const Rail& rail, Params& params, const Data& data) const
{
    const std::string_view corner = viewVoltageCorner(params, data);
    const std::string_view key = rangeKey(rail, params, data);
    const std::string_view sku = viewSkuName(params, data);
    return ZelmHelperUtils::IFERROR(data.findVoltageRange(corner, key, sku), 0);
}

float ZelmOrvaneStaticModel::validMin(const Rail& rail, Params& params, const Data& data) const
{
    return once(params[rail.validMin], [&] {
        return ZelmHelperUtils::IFERROR(data.findVoltageRange("MIN", rail.key, viewSkuName(params, data)), 0);
    });
}

float ZelmOrvaneStaticModel::validMax(const Rail& rail, Params& params, const Data& data) const
{
    return once(params[rail.validMax], [&] {
        return ZelmHelperUtils::IFERROR(data.findVoltageRange("MAX", rail.key, viewSkuName(params, data)), 0);
    });
}

float ZelmOrvaneStaticModel::railCurrent(const Rail& rail, Params& params, const Data& data) const
{
    return once(params[rail.staticCurrent], [&] {
        const float volts = valueOf(rail.volts, params, data);
        const float sum = sumOf(rail.leaks, -0.0f, params, data);
        return volts == 0.0f ? 0.0f : sum;
    });
}

float ZelmOrvaneStaticModel::railPower(const Rail& rail, Params& params, const Data& data) const
{
    return once(params[rail.staticPower], [&] {
        const float volts = valueOf(rail.volts, params, data);
        const float current = railCurrent(rail, params, data);
        return volts * current;
    });
}

float ZelmOrvaneStaticModel::railPowerupCurrent(const Rail& rail, Params& params, const Data& data) const
{
    return once(params[rail.powerupCurrent], [&] {
        const float sum = sumOf(rail.powersUp, -0.0f, params, data);
        if (!rail.powerupNeedsVolts)
            return sum;
        const float volts = valueOf(rail.volts, params, data);
        return volts == 0.0f ? 0.0f : sum;
    });
}

// ---- Leakage of a site ----

std::string_view ZelmOrvaneStaticModel::curveKey(const Site& site, Params& params, const Data& data) const
{
    return site.curveKey.empty() ? viewDeviceName(params, data) : site.curveKey;
}

template <CurveCell which>
float ZelmOrvaneStaticModel::term(const Site& site, Params& params, const Data& data) const
{
    return once(params[curveCell(site, which)], [&] {
        const std::string_view key = curveKey(site, params, data);
        const std::string_view process = viewProcess(params, data);
        const std::string_view letter = kTermKeys[which - TermA];
        return ZelmHelperUtils::IFERROR(data.findVtCoefficient(key, process, site.railKey, letter), 0);
    });
}

float ZelmOrvaneStaticModel::leakage(const Site& site, Params& params, const Data& data) const
{
    return once(params[curveCell(site, Leakage)], [&] {
        const float a = term<TermA>(site, params, data);
        const float b = term<TermB>(site, params, data);
        const float c = term<TermC>(site, params, data);
        const float d = term<TermD>(site, params, data);
        const float e = term<TermE>(site, params, data);
        const float constant = term<TermConst>(site, params, data);
        const float temperature = getJunctionTemperature(params, data);
        // All in double but for E x T.
        const double t = temperature;
        return a * std::pow(t, 5.0) + b * std::pow(t, 4.0) + c * std::pow(t, 3.0) + d * (t * t) +
               static_cast<double>(e * temperature) + constant;
    });
}

float ZelmOrvaneStaticModel::leakageAt25(const Site& site, Params& params, const Data& data) const
{
    return once(params[curveCell(site, Leakage25)], [&] {
        const float a = term<TermA>(site, params, data);
        const float b = term<TermB>(site, params, data);
        const float c = term<TermC>(site, params, data);
        const float d = term<TermD>(site, params, data);
        const float e = term<TermE>(site, params, data);
        const float constant = term<TermConst>(site, params, data);
        return a * 9765625.0 + b * 390625.0 + c * 15625.0 + d * 625.0 + static_cast<double>(e * 25.0f) + constant;
    });
}

template <VoltageTerm which>
float ZelmOrvaneStaticModel::voltageTerm(const Site& site, Params& params, const Data& data) const
{
    return once(params[voltageCell(site, which)], [&] {
        const std::string_view key = curveKey(site, params, data);
        const std::string_view process = viewProcess(params, data);
        return ZelmHelperUtils::IFERROR(data.findVoltageScaling(key, process, site.railKey, kVoltageKeys[which]), 0);
    });
}

float ZelmOrvaneStaticModel::calculateCommonVccauxVC3(Params& params, const Data& data) const
{
    return once(params[Params::COMMON_VCCAUX_V_C3], [&] {
        const std::string_view device = viewDeviceName(params, data);
        const std::string_view process = viewProcess(params, data);
        return ZelmHelperUtils::IFERROR(data.findVoltageScaling(device, process, "VCCAUX", "C3"), 0);
    });
}

float ZelmOrvaneStaticModel::voltageScaling(const Site& site, Params& params, const Data& data) const
{
    return once(params[site.scaling], [&] {
        const float c1 = voltageTerm<VoltageC1>(site, params, data);
        const float c2 = voltageTerm<VoltageC2>(site, params, data);
        const float volts = valueOf(site.volts, params, data);
        const float own = c1 * std::exp(c2 * volts);
        if (!site.followsCore)
            return c1 == 0.0f ? 1.0f : own;
        const float c3 = calculateCommonVccauxVC3(params, data);
        const float core = getVccint(params, data);
        return c1 == 0.0f ? 1.0f : own * std::exp(c3 * core);
    });
}

float ZelmOrvaneStaticModel::binning(const Site& site, Params& params, const Data& data) const
{
    return once(params[curveCell(site, Binning)], [&] {
        const std::string_view key = site.binningKey.empty() ? viewDeviceName(params, data) : site.binningKey;
        const std::string_view process = viewProcess(params, data);
        const std::string_view sku = viewSkuName(params, data);
        return ZelmHelperUtils::IFERROR(data.findBinningFactors(key, process, site.railKey, sku), 1);
    });
}

float ZelmOrvaneStaticModel::share(const Site& site, Params& params, const Data& data) const
{
    return once(params[site.share], [&] {
        if (!site.needsHarlIo)
            return 1.0f;
        return viewHasHarlIo(params, data) == "YES" ? 1.0f : 0.0f;
    });
}

int ZelmOrvaneStaticModel::units(const Site& site, Params& params, const Data& data) const
{
    return once(params[site.units], [&] {
        const int count = valueOf(site.count, params, data);
        return site.countedInFours ? zelm::truncate(0.25f * static_cast<float>(count)) : count;
    });
}

int ZelmOrvaneStaticModel::calculateAvailableLorvQuads(Params& params, const Data& data) const
{
    return once(params[Params::AVAILABLE_LORV_QUADS], [&] {
        return ZelmHelperUtils::IFERROR(data.findUnbondedGtInfo(viewDeviceName(params, data), "LORV"), 0);
    });
}

int ZelmOrvaneStaticModel::calculateAvailableSarnQuads(Params& params, const Data& data) const
{
    return once(params[Params::AVAILABLE_SARN_QUADS], [&] {
        return ZelmHelperUtils::IFERROR(data.findUnbondedGtInfo(viewDeviceName(params, data), "SARN_56G"), 0);
    });
}

float ZelmOrvaneStaticModel::multiplier(const Site& site, Params& params, const Data& data) const
{
    return site.share != LastFloat ? share(site, params, data) : static_cast<float>(units(site, params, data));
}

float ZelmOrvaneStaticModel::siteCurrent(const Site& site, Params& params, const Data& data) const
{
    return once(params[site.staticCurrent], [&] {
        const float leaks = leakage(site, params, data);
        const float scaling = voltageScaling(site, params, data);
        const float bin = binning(site, params, data);
        const float count = multiplier(site, params, data);
        return leaks * scaling * bin * count;
    });
}

// ---- Power-up current of a site ----

float ZelmOrvaneStaticModel::totalPowerFactor(const Site& site, Params& params, const Data& data) const
{
    return once(params[site.totalPowerFactor],
                [&] { return data.findTotalPowerFactors(viewDeviceName(params, data), site.railKey); });
}

float ZelmOrvaneStaticModel::powerupConst(const Site& site, Params& params, const Data& data) const
{
    return once(params[site.powerupConst], [&] {
        if (site.inrush == Inrush::none)
            return 0.0f;
        // A missing row isn't replaced: it gives a current that nobody takes for real.
        const float milliamperes = data.findPowerupCurrent(viewDeviceName(params, data), site.railKey);
        if (site.inrush == Inrush::tabled)
            return milliamperes / 1000.0f;
        const float quads = static_cast<float>(valueOf(site.count, params, data));
        return quads * milliamperes / 1000.0f;
    });
}

float ZelmOrvaneStaticModel::powerupCurrent(const Site& site, Params& params, const Data& data) const
{
    return once(params[site.powerupCurrent], [&] {
        const float leaks = leakageAt25(site, params, data);
        const float scaling = voltageScaling(site, params, data);
        const float bin = binning(site, params, data);
        const float count = multiplier(site, params, data);
        const float factor = totalPowerFactor(site, params, data);
        const float inrush = powerupConst(site, params, data);
        const bool isMax = viewProcess(params, data) == "MAX";
        const float used = leaks * scaling * bin * count * factor;
        // Four gates for like sites; results must match the characterisation workbook.
        bool open = isMax;
        switch (site.gate) {
        case Gate::anyUnits:
            open = isMax && count > 0.0f;
            break;
        case Gate::anyUse:
            open = isMax && valueOf(site.count, params, data) != 0;
            break;
        case Gate::none:
            break;
        case Gate::leaking:
            return isMax ? used + (leaks == 0.0f ? 0.0f : inrush) : 0.0f;
        }
        return open ? used + inrush : 0.0f;
    });
}

// ---- Outputs made of other cells ----

float ZelmOrvaneStaticModel::copiedCurrent(const Copy& copy, Params& params, const Data& data) const
{
    return once(params[copy.to], [&] { return valueOf(copy.from, params, data); });
}

float ZelmOrvaneStaticModel::sharePower(const Share& share, Params& params, const Data& data) const
{
    return once(params[share.power], [&] {
        const float volts = valueOf(share.volts, params, data);
        const float current = valueOf(share.current, params, data);
        return volts * current;
    });
}

float ZelmOrvaneStaticModel::total(const Total& total, Params& params, const Data& data) const
{
    return once(params[total.cell], [&] { return sumOf(total.addends, total.start, params, data); });
}

float ZelmOrvaneStaticModel::calculatePlStaticPower(Params& params, const Data& data) const
{
    return once(params[Params::PL_STATIC_POWER], [&] {
        const float rails = sumOf(kFabricRails, 0.0f, params, data);
        // VCCME's current is part of VCCINT's. It is taken out at VCCME's voltage, which leaves a rest where the two
        // voltages differ; results must match the characterisation workbook.
        const float computeArray = calculateNemtStaticPower(params, data);
        const float wist5 = calculateVccwist5StaticPower(params, data);
        return rails - computeArray + wist5;
    });
}

#include "device/ZelmOrvaneStaticModel.h"

#include "device/ZelmOrvaneStaticNetwork.h"
#include "framework/ZelmModelBlockImpl.h"

#include <cmath>
#include <optional>

#define ZELM_MODEL ZelmOrvaneStaticModel
#define ZELM_CELL_ROWS "device/ZelmOrvaneStaticCells.def"
#define ZELM_TABLE_ROWS "device/ZelmOrvaneStaticTables.def"
#define ZELM_MANY_MEMBERS

using namespace zelm::staticpower;

namespace {

// The last keys of VT_COEFFICIENT and VOLTAGE_SCALING.
constexpr zelm::Key kTermA = "A";
constexpr zelm::Key kTermB = "B";
constexpr zelm::Key kTermC = "C";
constexpr zelm::Key kTermConst = "CONST";
constexpr zelm::Key kTermD = "D";
constexpr zelm::Key kTermE = "E";
constexpr zelm::Key kVoltageC1 = "C1";
constexpr zelm::Key kVoltageC2 = "C2";

} // namespace

struct ZelmOrvaneStaticModel::Sheet : zelm::Sheet<ZelmOrvaneStaticModel> {
#include "framework/ZelmAccessors.inc"

    void pullOutputs() const
    {
        for (const FloatCell cell : kOutputs)
            value(cell);
    }

    float sumOf(const Addends& addends, float start) const
    {
        float sum = start;
        for (const FloatCell cell : addends)
            sum += value(cell);
        return sum;
    }

    // ---- SKU and corner ----

    std::string computeSpeedGradeStr() const
    {
        return "SPEED_" + std::string(SpeedGrade());
    }

    std::string_view computeSkuName() const
    {
        const Key& speed = SpeedGradeStr();
        const Key& voltage = VoltageGrade();
        const Key& screen = PowerScreen();
        const Key& temperature = TempGrade();
        const Key& overDrive = OverDrive();
        return findSkuList(speed, voltage, screen, temperature, overDrive);
    }

    std::string_view computeVoltageCorner() const
    {
        return "NOM";
    }

    // ---- Rails ----

    std::string_view rangeKey(const Rail& rail) const
    {
        return rail.key.text();
    }

    float nominalVolts(const Rail& rail) const
    {
        const Key& corner = VoltageCorner();
        const Key& key = value(rail.rangeKey);
        const Key& sku = SkuName();
        return IFERROR(findVoltageRange(corner, key, sku), 0);
    }

    float validMin(const Rail& rail) const
    {
        return IFERROR(findVoltageRange("MIN", rail.key, SkuName()), 0);
    }

    float validMax(const Rail& rail) const
    {
        return IFERROR(findVoltageRange("MAX", rail.key, SkuName()), 0);
    }

    float railCurrent(const Rail& rail) const
    {
        const float volts = value(rail.volts);
        const float sum = sumOf(rail.leaks, -0.0f);
        return volts == 0.0f ? 0.0f : sum;
    }

    float railPower(const Rail& rail) const
    {
        const float volts = value(rail.volts);
        const float current = value(rail.railCurrent);
        return volts * current;
    }

    float railPowerupCurrent(const Rail& rail) const
    {
        const float sum = sumOf(rail.powersUp, -0.0f);
        if (!rail.powerupNeedsVolts)
            return sum;
        const float volts = value(rail.volts);
        return volts == 0.0f ? 0.0f : sum;
    }

    // ---- Leakage of a site ----

    const Key& curveKey(const Site& site) const
    {
        return site.curveKey.empty() ? DeviceName() : site.curveKey;
    }

    template <const Key& letter>
    float term(const Site& site) const
    {
        const Key& key = curveKey(site);
        const Key& process = Process();
        return IFERROR(findVtCoefficient(key, process, site.railKey, letter), 0);
    }

    float termA(const Site& site) const
    {
        return term<kTermA>(site);
    }

    float termB(const Site& site) const
    {
        return term<kTermB>(site);
    }

    float termC(const Site& site) const
    {
        return term<kTermC>(site);
    }

    float termConst(const Site& site) const
    {
        return term<kTermConst>(site);
    }

    float termD(const Site& site) const
    {
        return term<kTermD>(site);
    }

    float termE(const Site& site) const
    {
        return term<kTermE>(site);
    }

    // Powers of the junction temperature.
    struct Powers {
        double second;
        double third;
        double fourth;
        double fifth;
    };

    // The same for all sites: computed once.
    const Powers& powersOf(double t) const
    {
        if (!m_powers)
            m_powers = {t * t, std::pow(t, 3.0), std::pow(t, 4.0), std::pow(t, 5.0)};
        return *m_powers;
    }

    double leakage(const Site& site) const
    {
        const float a = value(site.termA);
        const float b = value(site.termB);
        const float c = value(site.termC);
        const float d = value(site.termD);
        const float e = value(site.termE);
        const float constant = value(site.termConst);
        const float temperature = JunctionTemperature();
        // All in double but for E x T.
        const Powers& t = powersOf(temperature);
        return a * t.fifth + b * t.fourth + c * t.third + d * t.second + static_cast<double>(e * temperature) +
               constant;
    }

    double leakageAt25(const Site& site) const
    {
        const float a = value(site.termA);
        const float b = value(site.termB);
        const float c = value(site.termC);
        const float d = value(site.termD);
        const float e = value(site.termE);
        const float constant = value(site.termConst);
        return a * 9765625.0 + b * 390625.0 + c * 15625.0 + d * 625.0 + static_cast<double>(e * 25.0f) + constant;
    }

    template <const Key& term>
    float voltageTerm(const Site& site) const
    {
        const Key& key = curveKey(site);
        const Key& process = Process();
        return IFERROR(findVoltageScaling(key, process, site.railKey, term), 0);
    }

    float voltageC1(const Site& site) const
    {
        return voltageTerm<kVoltageC1>(site);
    }

    float voltageC2(const Site& site) const
    {
        return voltageTerm<kVoltageC2>(site);
    }

    float computeCommonVccauxVC3() const
    {
        const Key& device = DeviceName();
        const Key& process = Process();
        return IFERROR(findVoltageScaling(device, process, "VCCAUX", "C3"), 0);
    }

    float voltageScaling(const Site& site) const
    {
        const float c1 = value(site.voltageC1);
        const float c2 = value(site.voltageC2);
        const float volts = value(site.volts);
        const float own = c1 * std::exp(c2 * volts);
        if (!site.followsCore)
            return c1 == 0.0f ? 1.0f : own;
        const float c3 = CommonVccauxVC3();
        const float core = Vccint();
        return c1 == 0.0f ? 1.0f : own * std::exp(c3 * core);
    }

    float binning(const Site& site) const
    {
        const Key& key = site.binningKey.empty() ? DeviceName() : site.binningKey;
        const Key& process = Process();
        const Key& sku = SkuName();
        return IFERROR(findBinningFactors(key, process, site.railKey, sku), 1);
    }

    float share(const Site& site) const
    {
        if (!site.needsHarlIo)
            return 1.0f;
        return HasHarlIo() == "YES" ? 1.0f : 0.0f;
    }

    int units(const Site& site) const
    {
        const int count = value(site.count);
        return site.countedInFours ? zelm::truncate(0.25f * static_cast<float>(count)) : count;
    }

    int computeAvailableLorvQuads() const
    {
        return IFERROR(findUnbondedGtInfo(DeviceName(), "LORV"), 0);
    }

    int computeAvailableSarnQuads() const
    {
        return IFERROR(findUnbondedGtInfo(DeviceName(), "SARN_56G"), 0);
    }

    float multiplier(const Site& site) const
    {
        return site.share != LastFloat ? value(site.share) : static_cast<float>(value(site.units));
    }

    float siteCurrent(const Site& site) const
    {
        const float leaks = value(site.leakage);
        const float scaling = value(site.voltageScaling);
        const float bin = value(site.binning);
        const float count = multiplier(site);
        return leaks * scaling * bin * count;
    }

    // ---- Power-up current of a site ----

    float totalPowerFactor(const Site& site) const
    {
        return findTotalPowerFactors(DeviceName(), site.railKey);
    }

    float powerupConst(const Site& site) const
    {
        if (site.inrush == Inrush::none)
            return 0.0f;
        // A missing row isn't replaced: it gives a current that nobody takes for real.
        const float milliamperes = findPowerupCurrent(DeviceName(), site.railKey);
        if (site.inrush == Inrush::tabled)
            return milliamperes / 1000.0f;
        const float quads = static_cast<float>(value(site.count));
        return quads * milliamperes / 1000.0f;
    }

    float powerupCurrent(const Site& site) const
    {
        const float leaks = value(site.leakageAt25);
        const float scaling = value(site.voltageScaling);
        const float bin = value(site.binning);
        const float count = multiplier(site);
        const float factor = value(site.totalPowerFactor);
        const float inrush = value(site.powerupConst);
        const bool isMax = Process() == "MAX";
        const float used = leaks * scaling * bin * count * factor;
        // Four gates for like sites; results must match the characterisation workbook.
        bool open = isMax;
        switch (site.gate) {
        case Gate::anyUnits:
            open = isMax && count > 0.0f;
            break;
        case Gate::anyUse:
            open = isMax && value(site.count) != 0;
            break;
        case Gate::none:
            break;
        case Gate::leaking:
            return isMax ? used + (leaks == 0.0f ? 0.0f : inrush) : 0.0f;
        }
        return open ? used + inrush : 0.0f;
    }

    // ---- Outputs made of other cells ----

    float copiedCurrent(const Copy& copy) const
    {
        return value(copy.from);
    }

    float sharePower(const Share& share) const
    {
        const float volts = value(share.volts);
        const float current = value(share.current);
        return volts * current;
    }

    float total(const Total& total) const
    {
        return sumOf(total.addends, total.start);
    }

    float computePlStaticPower() const
    {
        const float rails = sumOf(kFabricRails, 0.0f);
        // VCCME's current is part of VCCINT's. It is taken out at VCCME's voltage, which leaves a rest where the two
        // voltages differ; results must match the characterisation workbook.
        const float computeArray = NemtStaticPower();
        const float wist5 = Vccwist5StaticPower();
        return rails - computeArray + wist5;
    }

private:
    mutable std::optional<Powers> m_powers;
};

#include "framework/ZelmModelBodies.inc"

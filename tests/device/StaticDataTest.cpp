// The shipped leakage data, and what the model makes of it.

#include "AllocationCount.h"

#include "device/ZelmOrvanePartsData.h"
#include "device/ZelmOrvaneStaticModel.h"

#include "support/Bits.h"
#include "support/DataDirectory.h"

#include <algorithm>
#include <cmath>
#include <map>

namespace zelm::test::staticDataTest {

using Params = ZelmOrvaneStaticParams;
using Data = ZelmOrvaneStaticData;
using Model = ZelmOrvaneStaticModel;
using Names = std::vector<std::string>;

class ShippedStaticTest : public testing::Test {
protected:
    static void SetUpTestSuite()
    {
        const DataDirVariable variable(shippedDataDirectory());
        ASSERT_TRUE(Data::getMutableGlobal().reset());
        ASSERT_TRUE(ZelmOrvanePartsData::getMutableGlobal().reset());
    }

    Names keys(const Names& path) const
    {
        Names found = data.getCfgKeys(path, false);
        std::sort(found.begin(), found.end());
        return found;
    }

    Params at(const std::string& device, const std::string& process, float temperature) const
    {
        Params params;
        params[Params::DEVICE_NAME] = device;
        params[Params::PROCESS] = process;
        params[Params::JUNCTION_TEMPERATURE] = temperature;
        Model::getGlobal().calculate(params);
        return params;
    }

    float total(const std::string& device, const std::string& process, float temperature) const
    {
        return at(device, process, temperature)[Params::TOTAL_STATIC_POWER];
    }

    // The curve as the model evaluates it, in double.
    double curve(const std::string& key, const std::string& process, const std::string& rail, double t) const
    {
        double sum = 0.0;
        for (const char* term : {"A", "B", "C", "D", "E", "CONST"}) {
            const float coefficient = data.getVtCoefficient(key, process, rail, term);
            EXPECT_NE(coefficient, zelm::unsetFloat) << key << process << rail << term;
            sum = sum * t + static_cast<double>(coefficient);
        }
        return sum;
    }

    const Data& data = Data::getGlobal();
    const Names devices = keys({"SUPPLY_LIST"});
};

TEST_F(ShippedStaticTest, EveryCurveIsPositiveAndRises)
{
    int curves = 0;
    for (const std::string& key : keys({"VT_COEFFICIENT"})) {
        const Names processes = keys({"VT_COEFFICIENT", key});
        EXPECT_THAT(processes, testing::ElementsAre("MAX", "TYP")) << key;
        for (const std::string& process : processes) {
            for (const std::string& rail : keys({"VT_COEFFICIENT", key, process})) {
                ++curves;
                if (data.getSupplyList(key, rail) == "NO") {
                    EXPECT_EQ(curve(key, process, rail, 125.0), 0.0) << key << " lacks " << rail;
                    continue;
                }
                double before = 0.0;
                for (int t = -40; t <= 125; ++t) {
                    const double now = curve(key, process, rail, t);
                    ASSERT_GT(now, before) << key << " " << process << " " << rail << " at " << t;
                    before = now;
                }
            }
        }
    }
    EXPECT_EQ(curves, 2 * (32 * static_cast<int>(devices.size()) + 43)); // 75 sites, 32 of them a device's
}

// On the rails of logic and memories; the others carry bias currents too, which grow with the absolute temperature
// alone.
TEST_F(ShippedStaticTest, LeakageDoublesEvery25To35Degrees)
{
    for (const std::string& device : devices) {
        for (const auto rail : {Params::VCCINT_STATIC_CURRENT, Params::VCCRAM_STATIC_CURRENT}) {
            for (const float t : {-40.0f, 0.0f, 25.0f, 60.0f, 90.0f}) {
                const double ratio =
                    static_cast<double>(at(device, "TYP", t + 30.0f)[rail] / at(device, "TYP", t)[rail]);
                const double interval = 30.0 / std::log2(ratio);
                EXPECT_GT(interval, 25.0) << device << " at " << t;
                EXPECT_LT(interval, 35.0) << device << " at " << t;
            }
        }
    }
}

TEST_F(ShippedStaticTest, WattsThatAThermalEngineerBelieves)
{
    EXPECT_GT(total("ZQ4410", "TYP", 25.0f), 2.0f);
    EXPECT_LT(total("ZQ4410", "TYP", 25.0f), 4.0f);
    EXPECT_GT(total("ZQ4410", "TYP", 100.0f), 10.0f);
    EXPECT_LT(total("ZQ4410", "TYP", 100.0f), 20.0f);
    for (const std::string& device : devices) {
        const float typical = total(device, "TYP", 100.0f);
        EXPECT_GT(typical, 3.0f) << device;
        EXPECT_LT(typical, 40.0f) << device;
        EXPECT_GT(total(device, "MAX", 100.0f), 1.7f * typical) << device;
        EXPECT_LT(total(device, "MAX", 100.0f), 2.5f * typical) << device;
        EXPECT_GT(at(device, "TYP", 100.0f)[Params::PL_STATIC_POWER], 0.5f * typical) << device;
    }
}

TEST_F(ShippedStaticTest, LeakageRisesWithVoltage)
{
    Params params = at("ZQ4410", "TYP", 85.0f);
    const float before = params[Params::COMMON_VCCINT_STATIC_CURRENT];
    const float auxiliary = params[Params::COMMON_VCCAUX_STATIC_CURRENT];
    EXPECT_NEAR(params[Params::COMMON_VCCINT_V_SCALING], 1.0, 1e-3); // characterised at the grade's voltage
    params[Params::VCCINT] = params[Params::VCCINT] + 0.1f;
    Model::getGlobal().calculate(params);
    EXPECT_NEAR(params[Params::COMMON_VCCINT_STATIC_CURRENT] / before, std::exp(0.32), 1e-3);
    EXPECT_GT(params[Params::COMMON_VCCAUX_STATIC_CURRENT], auxiliary);
}

TEST_F(ShippedStaticTest, EveryGradeHasAWholeSku)
{
    std::map<std::string, int> uses;
    const Names speeds = keys({"SKU_LIST"});
    EXPECT_THAT(speeds, testing::ElementsAre("SPEED_1", "SPEED_2", "SPEED_3"));
    for (const std::string& speed : speeds)
        for (const std::string voltage : {"LP", "MP", "HP"})
            for (const std::string screen : {"STANDARD", "LOW"})
                for (const std::string temperature : {"EXTENDED", "INDUSTRIAL", "MILITARY"})
                    for (const std::string overDrive : {"OD_NO", "OD_YES"})
                        ++uses[data.getSkuList(speed, voltage, screen, temperature, overDrive)];
    EXPECT_EQ(uses.count(std::string(zelm::unsetString)), 0u);
    EXPECT_EQ(uses.size(), 12u);
    const Names rails = keys({"VOLTAGE_RANGE", "NOM"});
    EXPECT_EQ(rails.size(), 48u); // 51 less the LORVP rails
    for (const std::string& rail : rails) {
        for (const auto& [sku, count] : uses) {
            const float nominal = data.getVoltageRange("NOM", rail, sku);
            EXPECT_GT(nominal, 0.6f) << rail << " " << sku;
            EXPECT_LT(nominal, 3.5f) << rail << " " << sku;
            EXPECT_LT(data.getVoltageRange("MIN", rail, sku), nominal) << rail << " " << sku;
            EXPECT_GT(data.getVoltageRange("MAX", rail, sku), nominal) << rail << " " << sku;
            EXPECT_LT(data.getVoltageRange("MAX", rail, sku), 1.1f * nominal) << rail << " " << sku;
        }
    }
    // Bins: for every key, process and rail, all the SKUs.
    for (const std::string& key : keys({"BINNING_FACTORS"}))
        for (const std::string& process : keys({"BINNING_FACTORS", key}))
            for (const std::string& rail : keys({"BINNING_FACTORS", key, process}))
                EXPECT_EQ(keys({"BINNING_FACTORS", key, process, rail}).size(), uses.size()) << key << rail;
}

TEST_F(ShippedStaticTest, NoLookUpOfTheModelMisses)
{
    // A coefficient that falls back would be 0, a bin 1 without a row, a factor the sentinel.
    for (const std::string& device : devices) {
        for (const std::string process : {"TYP", "MAX"}) {
            Params params = at(device, process, 100.0f);
            for (const std::string& rail : keys({"VT_COEFFICIENT", "ZQ4410", "TYP"})) {
                EXPECT_NE(data.getVtCoefficient(device, process, rail, "CONST"), zelm::unsetFloat) << device << rail;
                EXPECT_NE(data.getVoltageScaling(device, process, rail, "C1"), zelm::unsetFloat) << device << rail;
                EXPECT_NE(data.getBinningFactors(device, process, rail, "MP_STD"), zelm::unsetFloat) << device << rail;
            }
            for (const ZelmCellInfo& cell : Params::cells()) {
                const std::string name(cell.name);
                const auto real = Params::string_to_float_enum(name);
                Model::getGlobal().pull(real, params, data); // also what calculate leaves alone; markers do nothing
                const bool isLeakage = name.ends_with("_VT_LEAKAGE") && !name.starts_with("COMMON_");
                if (name.ends_with("_V_C1") || isLeakage) {
                    EXPECT_GT(params[real], 0.0f) << device << " " << name;
                }
                if (name.ends_with("_TOTAL_POWER_FACTOR")) {
                    EXPECT_LT(params[real], 2.0f) << device << " " << name;
                }
            }
        }
    }
}

TEST_F(ShippedStaticTest, EveryDeviceAndGradePowersUp)
{
    for (const std::string& device : devices) {
        for (const char* voltage : {"LP", "MP", "HP"}) {
            Params params;
            params[Params::DEVICE_NAME] = device;
            params[Params::PROCESS] = "MAX";
            params[Params::VOLTAGE_GRADE] = voltage;
            params[Params::HAS_HARL_IO] = "YES";
            params[Params::USED_SARN_POWER_QUADS] = params[Params::USED_LORVP_POWER_QUADS] = 4;
            params[Params::USED_ADC_CORE] = params[Params::USED_DAC_CORE] = 4;
            params[Params::USED_OCM2S_ACTIVE] = 1;
            Model::getGlobal().calculate(params);
            Names outputs;
            Params::getFloatModelOutputNames(outputs);
            for (const std::string& name : outputs) {
                const float value = params[Params::string_to_float_enum(name)];
                EXPECT_TRUE(std::isfinite(value) && std::fabs(value) < 100.0f)
                    << device << " " << voltage << " " << name << " = " << show(value);
            }
            EXPECT_GT(params[Params::VCCINT_POWERUP_CURRENT], 0.3f) << device;
        }
    }
}

TEST_F(ShippedStaticTest, TheCatalogueSellsTheseDevices)
{
    const auto& catalogue = ZelmOrvanePartsData::getGlobal();
    Names sold = catalogue.getCfgKeys({"DEVICE_TO_FAMILY_MAP"}, false);
    for (std::string& name : sold)
        std::transform(name.begin(), name.end(), name.begin(), [](unsigned char c) { return std::toupper(c); });
    std::sort(sold.begin(), sold.end());
    EXPECT_EQ(sold, devices);
    EXPECT_EQ(data.getIntToExtDevMap("T60"), "ZQ4410");
    for (const std::string& device : devices) {
        std::string cut = device.substr(0, device.size() - 1) + "_";
        std::transform(cut.begin(), cut.end(), cut.begin(), [](unsigned char c) { return std::tolower(c); });
        EXPECT_EQ(data.getUnbondedGtInfo(device, "LORV"), catalogue.getResourceData(cut, "LORV_QUAD")) << device;
        EXPECT_EQ(data.getUnbondedGtInfo(device, "SARN_56G"), catalogue.getResourceData(cut, "SARN_QUAD")) << device;
        const Names packages = keys({"PART_STATUS", device});
        EXPECT_GE(packages.size(), 2u) << device;
        for (const std::string& package : packages)
            for (const char* kind : {"LORV", "LORVP", "SARN_56G"})
                EXPECT_LE(data.getGtInfo(device + "_" + package, kind), data.getUnbondedGtInfo(device, kind))
                    << device << package << kind;
    }
}

TEST_F(ShippedStaticTest, CalculateDoesntAllocateOnceWarm)
{
    Params params = at("ZQ4410", "MAX", 100.0f);
    Model::getGlobal().calculate(params);
    const std::size_t before = allocationCount();
    Model::getGlobal().calculate(params);
    EXPECT_EQ(allocationCount(), before);
    EXPECT_GT(before, 0u) << "nothing counted";
}

} // namespace zelm::test::staticDataTest

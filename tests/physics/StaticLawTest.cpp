// Static power over temperature and process, on every device.

#include "AnyBlock.h"

#include <gmock/gmock.h>

namespace zelm::test::staticLawTest {

namespace {

constexpr const char* kDevices[] = {"ZQ2210", "ZQ4410", "ZQ5620", "ZR1810", "ZR3320", "ZW4630", "ZB2810", "ZC7540"};

class StaticLaw : public testing::TestWithParam<const char*> {
protected:
    double total(const char* process, double temperature, const char* output = "TOTAL_STATIC_POWER") const
    {
        return calculated("Static",
                          {{"DEVICE_NAME", GetParam()},
                           {"PROCESS", process},
                           {"JUNCTION_TEMPERATURE", temperature},
                           {"HAS_HARL_IO", "YES"}},
                          {output});
    }
};

TEST_P(StaticLaw, RisesFromMinus40To125)
{
    for (const char* process : {"TYP", "MAX"}) {
        double before = 0.0;
        for (int t = -40; t <= 125; t += 5) {
            const double now = total(process, t);
            EXPECT_GT(now, before) << process << " at " << t;
            before = now;
        }
    }
}

TEST_P(StaticLaw, WorstProcessIsUpToTwiceTypical)
{
    for (int t = -40; t <= 125; t += 15) {
        const double ratio = total("MAX", t) / total("TYP", t);
        EXPECT_GT(ratio, 1.5) << "at " << t;
        EXPECT_LT(ratio, 2.5) << "at " << t;
    }
}

// Regulators, references and oscillators: proportional to absolute temperature, 373 K / 298 K = 1.25, and a little
// leakage.
TEST_P(StaticLaw, BiasIsNoLeakage)
{
    for (const char* rail : {"VCCAUX_STATIC_CURRENT", "VCCAUXHARL_STATIC_CURRENT", "VCCAUXSMON_STATIC_CURRENT"}) {
        const double growth = total("TYP", 100.0, rail) / total("TYP", 25.0, rail);
        EXPECT_GT(growth, 1.2) << rail;
        EXPECT_LT(growth, 1.5) << rail;
        const double spread = total("MAX", 100.0, rail) / total("TYP", 100.0, rail);
        EXPECT_GT(spread, 1.0) << rail;
        EXPECT_LT(spread, 1.3) << rail;
    }
}

TEST_P(StaticLaw, LeakageDoublesEvery25To35Degrees)
{
    for (const char* rail : {"VCCINT_STATIC_CURRENT", "VCCRAM_STATIC_CURRENT"}) {
        for (int t = -40; t <= 90; t += 10) {
            EXPECT_GT(total("TYP", t + 35, rail), 2.0 * total("TYP", t, rail)) << rail << " at " << t;
            EXPECT_LT(total("TYP", t + 25, rail), 2.0 * total("TYP", t, rail)) << rail << " at " << t;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(All, StaticLaw, testing::ValuesIn(kDevices));

TEST(Converters, DrawNearlyTheSameOnBothSidesAndAtAllTemperatures)
{
    const auto watts = [](const char* process, double temperature, double used) {
        return calculated("Static",
                          {{"DEVICE_NAME", "ZW4630"},
                           {"PROCESS", process},
                           {"JUNCTION_TEMPERATURE", temperature},
                           {"USED_ADC_CORE", used},
                           {"USED_DAC_CORE", used}},
                          {"TOTAL_STATIC_POWER"});
    };
    const auto converters = [&](const char* process, double temperature) {
        return watts(process, temperature, 8.0) - watts(process, temperature, 0.0);
    };
    const double room = converters("TYP", 25.0);
    EXPECT_GT(room, 2.0); // eight of either kind at 120 to 350 mW each
    EXPECT_LT(room, 6.0);
    EXPECT_LT(converters("TYP", 100.0), 1.5 * room);
    EXPECT_LT(converters("MAX", 100.0), 1.3 * converters("TYP", 100.0));
}

} // namespace

} // namespace zelm::test::staticLawTest

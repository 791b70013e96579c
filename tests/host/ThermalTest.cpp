#include "support/Bits.h"

#include "host/estimate/Thermal.h"

#include <cmath>
#include <cstddef>
#include <set>

namespace zelm::test::thermalTest {

using namespace zelm::host;
using testing::HasSubstr;

namespace {

// What a device does that warms up from ambient: each step's heat gives the next temperature.
double settled(const PowerCurve& power, double ambient, double theta)
{
    double junction = ambient;
    double before = -HUGE_VAL;
    for (int step = 0; step < 100000 && junction < 1000.0 && junction - before > 1e-10; ++step) {
        before = junction;
        junction = ambient + theta * power(junction);
    }
    return junction;
}

// The largest x between low and high, to 1e-9, for which good holds; good holds at low and not at high.
template <class Good>
double bisect(double low, double high, Good good)
{
    for (int step = 0; step < 60; ++step) {
        const double middle = 0.5 * (low + high);
        (good(middle) ? low : high) = middle;
    }
    return low;
}

const PowerCurve kConstant = [](double) { return 10.0; };
const PowerCurve kLinear = [](double t) { return 5.0 + 0.1 * t; };
const PowerCurve kExponential = [](double t) { return 4.0 + 2.0 * std::exp(0.03 * (t - 25.0)); };

TEST(Thermal, ConstantPowerHeatsByThetaTimesPower)
{
    const OperatingPoint point = findOperatingPoint(kConstant, 40.0, 1.5);
    EXPECT_TRUE(point.converged) << point.words;
    EXPECT_NEAR(point.junction, 55.0, 1e-3); // 40 + 1.5 x 10
    EXPECT_DOUBLE_EQ(point.power, 10.0);
    EXPECT_NEAR(point.loopGain, 0.0, 1e-9);
    EXPECT_NEAR(highestAmbient(kConstant, 1.5, 100.0), 85.0, 1e-6);         // 100 - 15
    EXPECT_NEAR(largestThetaJA(kConstant, 40.0, 100.0).value(), 6.0, 1e-6); // 60 / 10
}

TEST(Thermal, LinearPowerHasAClosedForm)
{
    const OperatingPoint point = findOperatingPoint(kLinear, 20.0, 4.0);
    EXPECT_TRUE(point.converged) << point.words;
    EXPECT_NEAR(point.junction, 40.0 / 0.6, 1e-3); // T = 20 + 4 (5 + 0.1 T)
    EXPECT_NEAR(point.loopGain, 0.4, 1e-9);
    EXPECT_NEAR(highestAmbient(kLinear, 4.0, 100.0), 40.0, 1e-6);                 // 100 - 4 x 15
    EXPECT_NEAR(largestThetaJA(kLinear, 20.0, 100.0).value(), 80.0 / 15.0, 1e-6); // 80 / (5 + 10)
}

TEST(Thermal, ZeroThetaStaysAtAmbient)
{
    const OperatingPoint point = findOperatingPoint(kExponential, 30.0, 0.0);
    EXPECT_TRUE(point.converged);
    EXPECT_NEAR(point.junction, 30.0, 1e-3);
}

TEST(Thermal, LeakageSettlesWhereIterationDoes)
{
    for (const double ambient : {-40.0, 0.0, 25.0, 50.0}) {
        for (const double theta : {0.1, 0.5, 1.0, 2.0}) {
            const double expected = settled(kExponential, ambient, theta);
            const OperatingPoint point = findOperatingPoint(kExponential, ambient, theta);
            EXPECT_EQ(point.converged, expected < 200.0) << ambient << " C, " << theta << " C/W: " << point.words;
            if (point.converged) {
                EXPECT_NEAR(point.junction, expected, 1e-3) << ambient << " C, " << theta << " C/W";
                // dP/dT = 0.06 e^(0.03 (T - 25))
                EXPECT_NEAR(point.loopGain, theta * 0.06 * std::exp(0.03 * (expected - 25.0)), 1e-4);
            }
        }
    }
}

TEST(Thermal, RunawayIsTold)
{
    const OperatingPoint steep = findOperatingPoint([](double t) { return 5.0 + t; }, 20.0, 1.0); // gain 1
    EXPECT_FALSE(steep.converged);
    EXPECT_THAT(steep.words, HasSubstr("thermal runaway"));
    // 4 x 0.06 e^(0.03 (T - 25)) is 1 at 25 + ln(1 / 0.24) / 0.03 = 72.57
    const OperatingPoint leaky = findOperatingPoint(kExponential, 60.0, 4.0);
    EXPECT_FALSE(leaky.converged);
    EXPECT_THAT(leaky.words, HasSubstr("from 73 degrees on"));
    EXPECT_GT(settled(kExponential, 60.0, 4.0), 999.0);
}

TEST(Thermal, TooMuchPowerIsNoRunaway)
{
    const OperatingPoint point = findOperatingPoint([](double) { return 500.0; }, 25.0, 1.0);
    EXPECT_FALSE(point.converged);
    EXPECT_THAT(point.words, HasSubstr("no equilibrium below 200 degrees"));
}

TEST(Thermal, TheLowestOfTwoEquilibriaCounts)
{
    // e^(0.03 (T - 25)) crosses the cooling's line twice.
    const OperatingPoint point = findOperatingPoint(kExponential, 25.0, 1.5);
    EXPECT_TRUE(point.converged) << point.words;
    EXPECT_LT(point.loopGain, 1.0);
    EXPECT_NEAR(point.junction, settled(kExponential, 25.0, 1.5), 1e-3);
}

TEST(Thermal, TwoEquilibriaCloserThanAnyStepAreFound)
{
    // With theta 4, ambient + 4 P(T) - T is least at T0 = 25 + ln(1 / 0.24) / 0.03, by ambient + const - T0: ambients
    // just below the one that makes this 0 have two equilibria next to T0, those just above have none.
    const double tangent = 25.0 + std::log(1.0 / 0.24) / 0.03;
    const double limit = tangent - 4.0 * kExponential(tangent);
    for (const double below : {1.0, 1e-2, 1e-3, 1e-4}) {
        const OperatingPoint point = findOperatingPoint(kExponential, limit - below, 4.0);
        EXPECT_TRUE(point.converged) << below << " below: " << point.words;
        EXPECT_LT(point.junction, tangent);
        EXPECT_NEAR(point.junction, settled(kExponential, limit - below, 4.0), 2e-2) << below;
        EXPECT_FALSE(findOperatingPoint(kExponential, limit + below, 4.0).converged) << below << " above";
    }
}

TEST(Thermal, CurvesThatFlattenOrFallAreFollowedToo)
{
    // Not what leakage does, but what a table can say: the first crossing counts all the same.
    const PowerCurve flattening = [](double t) { return 60.0 - 40.0 * std::exp(-0.05 * (t - 25.0)); };
    const PowerCurve falling = [](double t) { return 30.0 - 0.1 * t; };
    const OperatingPoint flat = findOperatingPoint(flattening, 25.0, 1.0);
    EXPECT_TRUE(flat.converged) << flat.words;
    EXPECT_NEAR(flat.junction, settled(flattening, 25.0, 1.0), 1e-3);
    EXPECT_NEAR(findOperatingPoint(falling, 20.0, 2.0).junction, 80.0 / 1.2, 1e-3); // T = 20 + 2 (30 - 0.1 T)
}

TEST(Thermal, NegativePowerIsNoOperatingPoint)
{
    const OperatingPoint point = findOperatingPoint([](double) { return -3.0; }, 25.0, 1.0);
    EXPECT_FALSE(point.converged);
    EXPECT_THAT(point.words, HasSubstr("-3 W, which no device has"));
    EXPECT_FALSE(findOperatingPoint([](double) { return std::nan(""); }, 25.0, 1.0).converged);
}

TEST(Thermal, AFewEvaluationsSuffice)
{
    int evaluations = 0;
    const PowerCurve counted = [&](double t) {
        ++evaluations;
        return kExponential(t);
    };
    findOperatingPoint(counted, 25.0, 1.0);
    EXPECT_LE(evaluations, 12); // each one is a whole static power model
}

TEST(Thermal, RunawaysAtOtherAmbientsLookAtTheSameTemperatures)
{
    // Proving that nothing settles takes some hundred evaluations; a curve that remembers them does it once.
    std::set<double> asked;
    const auto newlyAsked = [&](double ambient) {
        const std::size_t before = asked.size();
        const PowerCurve noted = [&](double t) {
            asked.insert(t);
            return kExponential(t);
        };
        EXPECT_FALSE(findOperatingPoint(noted, ambient, 4.0).converged) << ambient;
        return asked.size() - before;
    };
    EXPECT_GT(newlyAsked(61.3), 50U);
    // Ambient itself, and the steps of a device that warms up.
    EXPECT_LE(newlyAsked(61.9), 10U);
    EXPECT_LE(newlyAsked(62.0), 10U);
}

TEST(Thermal, HighestAmbientAgreesWithBisection)
{
    for (const double theta : {0.3, 1.0, 3.0, 6.0}) {
        for (const double limit : {70.0, 85.0, 125.0}) {
            const double expected = bisect(
                -400.0, limit + 1.0, [&](double ambient) { return settled(kExponential, ambient, theta) <= limit; });
            EXPECT_NEAR(highestAmbient(kExponential, theta, limit), expected, 2e-3)
                << "theta " << theta << ", limit " << limit;
        }
    }
}

TEST(Thermal, LargestThetaAgreesWithBisection)
{
    for (const double ambient : {-20.0, 25.0, 60.0}) {
        for (const double limit : {70.0, 85.0, 125.0}) {
            const double expected =
                bisect(0.0, 1000.0, [&](double theta) { return settled(kExponential, ambient, theta) <= limit; });
            const auto theta = largestThetaJA(kExponential, ambient, limit);
            ASSERT_TRUE(theta.has_value());
            EXPECT_NEAR(*theta, expected, 2e-3 * expected) << "ambient " << ambient << ", limit " << limit;
        }
    }
    EXPECT_EQ(largestThetaJA(kExponential, 100.0, 85.0), std::nullopt);
    EXPECT_EQ(largestThetaJA(kExponential, 85.0, 85.0), 0.0);
    EXPECT_EQ(largestThetaJA([](double) { return 0.0; }, 25.0, 85.0), HUGE_VAL);
}

} // namespace

} // namespace zelm::test::thermalTest

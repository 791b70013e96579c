#include "Designs.h"

#include "host/estimate/StaticPower.h"
#include "host/estimate/Transient.h"

#include <cmath>
#include <limits>
#include <numeric>

namespace zelm::test::transientTest {

using namespace zelm::host;
using testing::HasSubstr;

namespace {

PowerCurve constant(double watts)
{
    return [watts](double) { return watts; };
}

// Static power that doubles every 25 degrees, beside a constant.
PowerCurve leaking(double dynamic, double leak)
{
    return [=](double junction) { return dynamic + leak * std::exp2((junction - 50.0) / 25.0); };
}

const TransientPoint& extreme(const PeriodicState& state, bool highest)
{
    const auto colder = [](const TransientPoint& a, const TransientPoint& b) { return a.junction < b.junction; };
    return highest ? *std::max_element(state.points.begin(), state.points.end(), colder)
                   : *std::min_element(state.points.begin(), state.points.end(), colder);
}

TEST(Transient, OneStageWithConstantPowersHasAClosedForm)
{
    constexpr double r = 2.0;
    constexpr double tau = 0.5;
    constexpr double ambient = 40.0;
    const PeriodicState state = periodicState({{r, tau}}, {{0.3, constant(10.0)}, {0.9, constant(1.0)}}, ambient);
    ASSERT_TRUE(state.found) << state.words;
    // The rise x goes to r P1 with a of its distance left, then to r P2 with b: x = r P2 + (y - r P2) b,
    // y = r P1 + (x - r P1) a.
    const double a = std::exp(-0.3 / tau);
    const double b = std::exp(-0.9 / tau);
    const double low = (r * 1.0 * (1.0 - b) + r * 10.0 * (1.0 - a) * b) / (1.0 - a * b);
    const double high = r * 10.0 + (low - r * 10.0) * a;
    EXPECT_NEAR(state.rises.at(0), low, 1e-9);
    EXPECT_NEAR(extreme(state, false).junction, ambient + low, 1e-9);
    EXPECT_NEAR(extreme(state, true).junction, ambient + high, 1e-9);
    EXPECT_NEAR(extreme(state, true).seconds, 0.3, 1e-12);
    for (const TransientPoint& point : state.points) {
        const double rise = point.phase == 0 ? 20.0 + (low - 20.0) * std::exp(-point.seconds / tau)
                                             : 2.0 + (high - 2.0) * std::exp(-(point.seconds - 0.3) / tau);
        EXPECT_NEAR(point.junction, ambient + rise, 1e-9) << "at " << point.seconds << " s";
    }
}

TEST(Transient, TimeConstantsFarFromThePeriodLoseNoDigits)
{
    // A stage that forgets within a millionth of a phase, and one that hardly moves in a million periods.
    const PeriodicState state =
        periodicState({{1.0, 1e-9}, {3.0, 1e6}}, {{1e-3, constant(6.0)}, {2e-3, constant(3.0)}}, 20.0);
    ASSERT_TRUE(state.found) << state.words;
    // The average of 6 W for 1 ms and 3 W for 2 ms is 4 W: 3 x 4 degrees over the slow stage; the fast one is at 1 x 6
    // or 1 x 3.
    EXPECT_NEAR(extreme(state, true).junction, 20.0 + 12.0 + 6.0, 1e-6);
    EXPECT_NEAR(state.points.back().junction, 20.0 + 12.0 + 3.0, 1e-6);
    EXPECT_NEAR(state.rises.at(1), 12.0, 1e-6);
}

TEST(Transient, EndsWhateverTheTimes)
{
    const double least = std::numeric_limits<double>::denorm_min();
    const PeriodicState fast = periodicState({{1.0, least}}, {{1.0, leaking(5.0, 5.0)}, {2.0, constant(1.0)}}, 20.0);
    ASSERT_TRUE(fast.found) << fast.words;
    EXPECT_NEAR(fast.points.back().junction, 21.0, 1e-3) << "follows at once";
    // A burst of a millisecond after thirty years: both stages have settled at 20 + 2 W x 1.5 degrees per watt, the
    // slow one stays.
    const PeriodicState late =
        periodicState({{0.5, 1e-6}, {1.0, 10.0}}, {{1e9, constant(2.0)}, {1e-3, leaking(20.0, 2.0)}}, 20.0);
    ASSERT_TRUE(late.found) << late.words;
    const TransientPoint& end = late.points.back();
    EXPECT_NEAR(end.junction, 20.0 + 2.0 + 0.5 * end.watts, 1e-2);
}

// The network's differential equations in fine steps by Runge and Kutta's rule of fourth order, from ambient through so
// many periods.
struct Fine {
    double lowest = HUGE_VAL;
    double highest = -HUGE_VAL;
    double joules = 0.0;
    std::vector<double> ends; ///< the junction at each phase's end, in the last period
};

Fine integrated(const std::vector<ThermalStage>& stages, const std::vector<Phase>& phases, double ambient, int periods,
                int steps)
{
    std::vector<double> rises(stages.size(), 0.0);
    const auto junction = [&](const std::vector<double>& x) { return std::accumulate(x.begin(), x.end(), ambient); };
    Fine fine;
    for (int period = 0; period < periods; ++period) {
        fine = Fine();
        for (const Phase& phase : phases) {
            const double h = phase.seconds / steps;
            const auto slope = [&](const std::vector<double>& x) {
                const double watts = phase.power(junction(x));
                std::vector<double> result;
                for (std::size_t s = 0; s < stages.size(); ++s)
                    result.push_back((stages[s].r * watts - x[s]) / stages[s].tau);
                return result;
            };
            const auto moved = [&](const std::vector<double>& by, double share) {
                std::vector<double> result = rises;
                for (std::size_t s = 0; s < stages.size(); ++s)
                    result[s] += share * h * by[s];
                return result;
            };
            for (int step = 0; step < steps; ++step) {
                const double watts = phase.power(junction(rises));
                const auto k1 = slope(rises);
                const auto k2 = slope(moved(k1, 0.5));
                const auto k3 = slope(moved(k2, 0.5));
                const auto k4 = slope(moved(k3, 1.0));
                for (std::size_t s = 0; s < stages.size(); ++s)
                    rises[s] += h * (k1[s] + 2.0 * k2[s] + 2.0 * k3[s] + k4[s]) / 6.0;
                fine.joules += 0.5 * h * (watts + phase.power(junction(rises)));
                fine.lowest = std::min(fine.lowest, junction(rises));
                fine.highest = std::max(fine.highest, junction(rises));
            }
            fine.ends.push_back(junction(rises));
        }
    }
    return fine;
}

TEST(Transient, AgreesWithAFineIntegrationWhileStaticPowerFollows)
{
    const std::vector<ThermalStage> stages{{0.4, 0.004}, {0.5, 0.05}, {0.6, 0.2}};
    const std::vector<Phase> phases{{0.05, leaking(2.0, 6.0)}, {0.01, leaking(40.0, 6.0)}, {0.03, leaking(15.0, 4.0)}};
    const PeriodicState state = periodicState(stages, phases, 30.0);
    ASSERT_TRUE(state.found) << state.words;
    const Fine fine = integrated(stages, phases, 30.0, 60, 2000); // 5.4 s, 27 times the longest time constant
    EXPECT_NEAR(extreme(state, false).junction, fine.lowest, 1e-3);
    EXPECT_NEAR(extreme(state, true).junction, fine.highest, 1e-3);
    double joules = 0.0;
    for (std::size_t i = 1; i < state.points.size(); ++i) {
        const TransientPoint& before = state.points[i - 1];
        const TransientPoint& here = state.points[i];
        if (here.phase == before.phase)
            joules += 0.5 * (here.seconds - before.seconds) * (here.watts + before.watts);
        else
            EXPECT_NEAR(before.junction, fine.ends[before.phase], 1e-3) << "as phase " << before.phase << " ends";
    }
    EXPECT_NEAR(joules, fine.joules, 1e-4 * fine.joules);
}

TEST(Transient, AStrongLoopSettlesToo)
{
    // 3.5 degrees per watt x 4 W x ln 2 / 25 is a gain of 0.39 at 50 degrees, and more where it settles.
    const std::vector<ThermalStage> stages{{3.5, 0.5}};
    const std::vector<Phase> phases{{0.2, leaking(3.0, 4.0)}, {0.3, leaking(1.0, 4.0)}};
    const PeriodicState state = periodicState(stages, phases, 25.0);
    ASSERT_TRUE(state.found) << state.words;
    const Fine fine = integrated(stages, phases, 25.0, 200, 500);
    EXPECT_NEAR(extreme(state, true).junction, fine.highest, 3e-3);
    EXPECT_NEAR(extreme(state, false).junction, fine.lowest, 3e-3);
}

TEST(Transient, FindsWhereTheJunctionTurnsWithinAPhase)
{
    // After a burst the fast stage cools while the slow one still warms up.
    const std::vector<ThermalStage> stages{{1.0, 0.01}, {5.0, 10.0}};
    const PeriodicState state =
        periodicState(stages, {{20.0, constant(1.0)}, {0.05, constant(30.0)}, {10.0, constant(10.0)}}, 20.0);
    ASSERT_TRUE(state.found) << state.words;
    const auto rise = [&](std::size_t s, double t) { // exact for constant powers
        const double a = stages[s].r * 1.0 + (state.rises[s] - stages[s].r * 1.0) * std::exp(-20.0 / stages[s].tau);
        const double b = stages[s].r * 30.0 + (a - stages[s].r * 30.0) * std::exp(-0.05 / stages[s].tau);
        return stages[s].r * 10.0 + (b - stages[s].r * 10.0) * std::exp(-t / stages[s].tau);
    };
    double least = HUGE_VAL;
    double when = 0.0;
    for (double t = 0.0; t < 0.5; t += 1e-5) {
        if (const double junction = 20.0 + rise(0, t) + rise(1, t); junction < least) {
            least = junction;
            when = t;
        }
    }
    const auto turn = std::min_element(state.points.begin(), state.points.end(),
                                       [](const TransientPoint& a, const TransientPoint& b) {
                                           return (a.phase == 2 ? a.junction : 1e9) < (b.phase == 2 ? b.junction : 1e9);
                                       });
    EXPECT_NEAR(turn->junction, least, 1e-6);
    EXPECT_NEAR(turn->seconds - 20.05, when, 1e-4);
}

TEST(Transient, RunawaysAreSaid)
{
    EXPECT_THAT(periodicState({{4.0, 1.0}}, {{1.0, leaking(10.0, 10.0)}}, 50.0).words, HasSubstr("thermal runaway"));
    // The average settles; a burst of many seconds doesn't.
    const PeriodicState burst =
        periodicState({{1.5, 1.0}}, {{100.0, leaking(60.0, 5.0)}, {1000.0, leaking(0.0, 1.0)}}, 50.0);
    EXPECT_FALSE(burst.found);
    EXPECT_THAT(burst.words, HasSubstr("thermal runaway"));
}

TEST(Transient, WarmsUpAsTheClosedFormDoes)
{
    const auto bands = warmUpFrom({{2.0, 4.0}}, {{0.5, constant(10.0)}}, 25.0, 50);
    ASSERT_EQ(bands.size(), 50u);
    EXPECT_NEAR(bands.back().seconds, 20.0, 1e-9) << "five times the time constant";
    double before = 0.0;
    for (const JunctionBand& band : bands) {
        const auto closed = [](double t) { return 25.0 + 20.0 * (1.0 - std::exp(-t / 4.0)); };
        EXPECT_GE(band.lowest, closed(std::max(0.0, before - 0.4)) - 1e-6)
            << band.seconds; // from a point of the one before
        EXPECT_LE(band.highest, closed(band.seconds) + 1e-6) << band.seconds;
        EXPECT_GT(band.highest, closed(before)) << band.seconds;
        before = band.seconds;
    }
}

TEST(Transient, WarmingUpTakesManyShortPeriodsAtTheirAverage)
{
    // 1 us and 3 us beside 100 s: 5 W on average.
    const auto bands = warmUpFrom({{2.0, 100.0}}, {{1e-6, constant(20.0)}, {3e-6, constant(0.0)}}, 25.0, 10);
    ASSERT_EQ(bands.size(), 10u);
    EXPECT_NEAR(bands.back().highest, 25.0 + 10.0 * (1.0 - std::exp(-5.0)), 1e-3);
}

TEST(Transient, WarmingUpEndsWhereItRunsAway)
{
    EXPECT_LT(warmUpFrom({{4.0, 1.0}}, {{1.0, leaking(10.0, 10.0)}}, 50.0, 100).size(), 100u);
}

TEST(Transient, TheTableOfStaticPowerIsAsGoodAsItsNumbers)
{
    const Estimate estimate =
        estimateOf(R"({"device": {"part": "zq4410_ktba3310_1_MP_i_S"}, "groups": [{"block": "Bram"}]})");
    const auto statics = staticPowerOf(estimate);
    for (const char* process : {"TYP", "MAX"}) {
        const PowerCurve direct = statics->curve(process);
        const PowerCurve table = tabled(direct);
        for (double junction = -39.87; junction < 125.0; junction += 3.19)
            EXPECT_NEAR(table(junction), direct(junction), 2e-6 * direct(junction)) << process << " at " << junction;
    }
}

} // namespace

} // namespace zelm::test::transientTest

#include "Designs.h"
#include "Tool.h"

#include "host/base/Json.h"
#include "host/report/StudyReports.h"
#include "host/study/Solve.h"

#include <fmt/format.h>
#include <gmock/gmock.h>

#include <cmath>

namespace zelm::test::solveTest {

using namespace zelm::host;
using testing::HasSubstr;

namespace {

// A design with the ambient temperature and the number of memories left open.
std::string designText(double ambient, int memories)
{
    return R"({"device": {"part": "zq4410"}, "environment": {"ambientTemperature": )" + std::to_string(ambient) +
           R"(, "thetaJA": 2}, "groups": [{"block": "Bram", "name": "buffers", "inputs": {"MODE": "BLKM36", "NUM_BRAMS": )" +
           std::to_string(memories) + "}}]}";
}

class SolveTest : public testing::Test {
protected:
    Solution solved(const std::string& text, const std::string& vary, const std::vector<std::string>& until) const
    {
        return solve(m_scratch.write("d.json", text), {vary, until, 2});
    }

    std::string messageOf(const std::string& vary, const std::string& until) const
    {
        try {
            solved(designText(40, 8), vary, {until});
        } catch (const Error& error) {
            return error.what();
        }
        return "no error";
    }

    const Scratch m_scratch;
};

// The grid of single steps tells between which two values the limit is crossed.
TEST_F(SolveTest, IsWhereAFineSweepCrosses)
{
    const Solution solution =
        solved(designText(40, 8), "environment.ambientTemperature=20:80", {"junction@MAX <= 60 C"});
    ASSERT_EQ(solution.crossings.size(), 1u);
    const double crossing = solution.crossings.front().value;
    EXPECT_LE(estimateOf(designText(crossing - 1e-6, 8)).sides[1].junction, 60.0) << crossing;
    EXPECT_GT(estimateOf(designText(crossing + 1e-6, 8)).sides[1].junction, 60.0) << crossing;
    double last = 0.0;
    for (int i = 0; i <= 600; ++i) {
        const double ambient = 20.0 + 0.1 * i;
        if (estimateOf(designText(ambient, 8)).sides[1].junction <= 60.0)
            last = ambient;
    }
    EXPECT_GE(crossing, last - 1e-6);
    EXPECT_LT(crossing, last + 0.1);
    EXPECT_NEAR(solution.crossings.front().amount, 60.0, 1e-5);
    EXPECT_TRUE(solution.crossings.front().ends);
}

TEST_F(SolveTest, WholeNumbersAreTheLastThatKeepsTheLimit)
{
    const auto watts = [](int memories) { return estimateOf(designText(40, memories)).sides[1].totalWatts; };
    constexpr int most = 300;
    const double limit = (watts(1) + watts(most)) / 2.0;
    int last = 0;
    for (int memories = 1; memories <= most; ++memories)
        last = watts(memories) <= limit ? memories : last;
    const std::string range = "groups[buffers].inputs.NUM_BRAMS=1:300";
    const Solution solution = solved(designText(40, 8), range, {fmt::format("total@MAX <= {}", limit)});
    ASSERT_EQ(solution.crossings.size(), 1u);
    EXPECT_TRUE(solution.isWhole);
    EXPECT_EQ(solution.crossings.front().value, last);
    const Solution below = solved(designText(40, 8), range, {fmt::format("total@MAX >= {}", limit)});
    ASSERT_EQ(below.crossings.size(), 1u);
    EXPECT_EQ(below.crossings.front().value, last + 1) << "the first from which the other limit is kept";
    EXPECT_FALSE(below.crossings.front().ends);
}

// P is proportional to f = 100 + 10 (x - 5)^2 MHz: half of what 400 MHz come to is at (x - 5)^2 = 10.
TEST_F(SolveTest, SeveralCrossingsAreAllFound)
{
    const char* text = R"({"parameters": {"x": 1}, "groups": [{"block": "Signal",
        "inputs": {"CLOCK_FREQ": "= 100 + 10 * (x - 5) * (x - 5) "}}]})";
    const double watts = estimateOf(R"({"groups": [{"block": "Signal", "inputs": {"CLOCK_FREQ": 400}}]})").dynamicWatts;
    const Solution solution = solved(text, "parameters.x=-1:12", {"dynamic >= " + std::to_string(watts * 5e5) + " uW"});
    ASSERT_EQ(solution.crossings.size(), 2u);
    EXPECT_FALSE(solution.isWhole);
    EXPECT_NEAR(solution.crossings[0].value, 5.0 - std::sqrt(10.0), 1e-4);
    EXPECT_NEAR(solution.crossings[1].value, 5.0 + std::sqrt(10.0), 1e-4);
    EXPECT_TRUE(solution.crossings[0].ends);
    EXPECT_FALSE(solution.crossings[1].ends);
    ASSERT_EQ(solution.kept.size(), 2u);
    EXPECT_EQ(solution.kept[0], std::pair(-1.0, solution.crossings[0].value));
    EXPECT_EQ(solution.kept[1], std::pair(solution.crossings[1].value, 12.0));
}

TEST_F(SolveTest, ParametersOfCountsAreWhole)
{
    const std::string text = R"({"parameters": {"lanes": 4}, "groups": [{"block": "Signal", "count": "= lanes"}]})";
    const double each = estimateOf(R"({"groups": [{"block": "Signal"}]})").dynamicWatts;
    const Solution solution = solved(text, "parameters.lanes=1:64", {fmt::format("dynamic <= {}", 41.5 * each)});
    EXPECT_TRUE(solution.isWhole);
    ASSERT_EQ(solution.crossings.size(), 1u);
    EXPECT_EQ(solution.crossings.front().value, 41.0);
}

TEST_F(SolveTest, TheTightestOfSeveralLimitsDecides)
{
    const std::vector<std::string> until{"junction@MAX <= 80 C", "junction@MAX <= 60 C", "dynamic <= 1 kW"};
    const Solution solution = solved(designText(40, 8), "environment.ambientTemperature=20:80", until);
    ASSERT_EQ(solution.crossings.size(), 2u) << "dynamic power stays far below a kilowatt";
    EXPECT_LT(solution.crossings[0].value, solution.crossings[1].value);
    ASSERT_TRUE(solution.decides);
    EXPECT_EQ(solution.limits[solution.crossings[*solution.decides].limit].words(), "junction@MAX <= 60 C");
    EXPECT_EQ(solveJson(solution)["decides"], "junction@MAX <= 60 C");
}

TEST_F(SolveTest, NoCrossingTellsTheEnds)
{
    const Solution solution = solved(designText(40, 8), "environment.ambientTemperature=20:30", {"total <= 1 kW"});
    EXPECT_TRUE(solution.crossings.empty());
    EXPECT_FALSE(solution.decides);
    EXPECT_EQ(solution.atLow.front(), estimateOf(designText(20, 8)).side().totalWatts);
    EXPECT_EQ(solution.atHigh.front(), estimateOf(designText(30, 8)).side().totalWatts);
    EXPECT_THAT(solveText(solution, Paint()), HasSubstr("No crossing: every limit is kept"));
    EXPECT_THAT(
        solveText(solved(designText(40, 8), "environment.ambientTemperature=20:30", {"total <= 1 mW"}), Paint()),
        HasSubstr("No crossing: a limit is broken"));
}

// Where the device runs away no limit is kept, and there is no root to find.
TEST_F(SolveTest, ARunawayBreaksEveryLimit)
{
    const Solution solution = solved(designText(100, 8), "environment.thetaJA=0.1:60", {"junction@MAX <= 1000 C"});
    ASSERT_EQ(solution.crossings.size(), 1u);
    EXPECT_TRUE(std::isnan(solution.atHigh.front()));
    EXPECT_TRUE(solution.crossings.front().ends);
    EXPECT_FALSE(std::isnan(solution.crossings.front().amount)) << "the last value at which the device settles";
}

TEST_F(SolveTest, UnitsMayBeWritten)
{
    const Solution solution = solved(designText(40, 8), "rails.VCCINT=600mV:0.9V", {"rail:VCCINT <= 2500 mA"});
    EXPECT_EQ(solution.unit, "mV");
    EXPECT_DOUBLE_EQ(solution.high, 900.0);
    EXPECT_DOUBLE_EQ(solution.limits.front().value, 2.5);
    ASSERT_FALSE(solution.crossings.empty());
    const double volts = solution.crossings.front().value / 1000.0;
    const auto amperes = [&](double at) {
        std::string text = designText(40, 8);
        return estimateOf(text.insert(1, "\"rails\": {\"VCCINT\": " + std::to_string(at) + "}, "))
            .side()
            .rail("VCCINT")
            ->amperes();
    };
    EXPECT_LE(amperes(volts - 1e-5), 2.5);
    EXPECT_GT(amperes(volts + 1e-5), 2.5);
}

TEST_F(SolveTest, MistakesAreTold)
{
    const std::string ambient = "environment.ambientTemperature=20:80";
    const Bad rows[] = {
        {"no value", "environment.ambientTemperature", {"--vary", "expected PATH=LO:HI"}},
        {"one value", "environment.ambientTemperature=20", {"expected two numbers, LO:HI"}},
        {"NaN", "environment.ambientTemperature=nan:80", {"expected two numbers"}},
        {"empty", "environment.ambientTemperature=80:20", {"the interval is empty: 80 isn't below 20"}},
        {"a point", "environment.ambientTemperature=20:20", {"the interval is empty"}},
        {"no whole numbers", "groups[buffers].inputs.NUM_BRAMS=8:8", {"the interval is empty"}},
        {"no such group", "groups[bufers].inputs.NUM_BRAMS=1:8", {"has no element bufers; did you mean buffers?"}},
        {"no such cell", "groups[buffers].inputs.NUM_BRAM=1:8", {"NUM_BRAM", "did you mean NUM_BRAMS"}},
        {"a word", "groups[buffers].inputs.MODE=1:8", {"words stand for the values"}},
        {"another unit", "rails.VCCINT=1A:2A", {"current"}},
        {"two units", "rails.VCCINT=1V:2A", {"--vary"}},
        {"modes", "modes[day].for=1:2", {"as it stands"}},
        {"all groups", "groups=1:2", {"holds more than a number"}},
    };
    for (const Bad& row : rows) {
        for (const std::string& words : row.words)
            EXPECT_THAT(messageOf(row.text, "total <= 4 W"), HasSubstr(words)) << row.name;
    }
    const Bad limits[] = {
        {"no sign", "total 4 W", {"--until total 4 W", "expected QUANTITY <= LIMIT"}},
        {"unknown", "totl <= 4 W", {"did you mean total?"}},
        {"unit", "total <= 4 A", {"current", "power"}},
        {"unit of degrees", "junction <= 95 W", {"power"}},
        {"no unit", "total <= 4 X", {"there is no unit X"}},
        {"nothing", "total <=", {"the limit is no number"}},
        {"NaN", "total <= nan", {"nan is no number"}},
    };
    for (const Bad& row : limits) {
        for (const std::string& words : row.words)
            EXPECT_THAT(messageOf(ambient, row.text), HasSubstr(words)) << row.name;
    }
}

} // namespace

} // namespace zelm::test::solveTest

#include "Designs.h"
#include "Tool.h"

#include "host/base/Json.h"
#include "host/report/Report.h"
#include "host/report/StudyReports.h"
#include "host/study/Diff.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <regex>

namespace zelm::test::diffTest {

using namespace zelm::host;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

namespace {

std::string wires(const std::string& count, const std::string& clock, const std::string& more = "")
{
    return R"({"name": "d", "groups": [{"block": "Signal", "name": "wires", "inputs": {"SIGNAL_COUNT": )" + count +
           R"(, "CLOCK_FREQ": )" + clock + "}}" + more + "]}";
}

class DiffTest : public testing::Test {
protected:
    Diff of(const std::string& before, const std::string& after) const
    {
        return diff({m_scratch.write("old.json", before), m_scratch.write("new.json", after)});
    }

    // The change that a group's input is said to make; 0 if none is.
    static double part(const DiffQuantity& quantity, const std::string& group, const std::string& input)
    {
        double sum = 0.0;
        for (const DiffPart& each : quantity.parts)
            sum += each.group == group && each.input == input ? each.change : 0.0;
        return sum;
    }

    static void expectToAddUp(const Diff& diff)
    {
        for (const DiffQuantity& quantity : diff.quantities) {
            if (std::isnan(quantity.change()))
                continue;
            double sum = 0.0;
            for (const DiffPart& each : quantity.parts)
                sum += each.change;
            const double size = std::max({1.0, std::fabs(quantity.before), std::fabs(quantity.after)});
            EXPECT_NEAR(sum, quantity.change(), 1e-12 * size) << quantity.quantity.name();
        }
    }

    static std::string example(const std::string& name)
    {
        return Scratch::read(std::string(ZELM_SOURCE_DIR "/examples/") + name + ".json");
    }

    const Scratch m_scratch;
};

// Nets draw in proportion to n f: a tenth and a fifth more, each alone, and 2 % that only both together make.
TEST_F(DiffTest, PartsAreWhatEachInputDoesAlone)
{
    const Diff diff = of(wires("1000", "200"), wires("1100", "240"));
    const DiffQuantity& total = diff.total();
    const double p = total.before;
    EXPECT_EQ(p, estimateOf(wires("1000", "200")).dynamicWatts);
    EXPECT_NEAR(total.change(), 0.32 * p, 1e-6 * p);
    EXPECT_NEAR(part(total, "wires", "SIGNAL_COUNT"), 0.1 * p, 1e-6 * p);
    EXPECT_NEAR(part(total, "wires", "CLOCK_FREQ"), 0.2 * p, 1e-6 * p);
    EXPECT_NEAR(part(total, "wires", "interaction"), 0.02 * p, 1e-6 * p);
    EXPECT_EQ(total.parts.size(), 3u);
    EXPECT_EQ(total.parts.front().input, "CLOCK_FREQ") << "the largest first";
    ASSERT_EQ(diff.groups.size(), 1u);
    ASSERT_EQ(diff.groups.front().inputs.size(), 2u);
    EXPECT_EQ(diff.groups.front().inputs.front().before, "1000");
    EXPECT_EQ(diff.groups.front().inputs.front().after, "1100");
    expectToAddUp(diff);
}

TEST_F(DiffTest, OneChangeIsTheWholeChange)
{
    const Diff diff = of(wires("1000", "200"), wires("1000", "250"));
    ASSERT_EQ(diff.total().parts.size(), 1u);
    EXPECT_EQ(diff.total().parts.front().change, diff.total().change());
}

TEST_F(DiffTest, GroupsComeGoAndChangeTheirNames)
{
    const std::string memories = R"(, {"block": "Bram", "name": "buffers", "inputs": {"NUM_BRAMS": 8}})";
    const std::string renamed = R"(, {"block": "Bram", "name": "row buffers", "inputs": {"NUM_BRAMS": 8}})";
    const Diff added = of(wires("1000", "200"), wires("1000", "200", memories));
    ASSERT_EQ(added.groups.size(), 1u);
    EXPECT_EQ(added.groups.front().fate, DiffGroup::Fate::added);
    EXPECT_EQ(part(added.total(), "buffers", "added"), added.total().change());
    EXPECT_GT(added.total().change(), 0.0);
    const Diff removed = of(wires("1000", "200", memories), wires("1000", "200"));
    ASSERT_EQ(removed.groups.size(), 1u);
    EXPECT_EQ(removed.groups.front().fate, DiffGroup::Fate::removed);
    EXPECT_EQ(part(removed.total(), "buffers", "removed"), removed.total().change());
    const Diff named = of(wires("1000", "200", memories), wires("1000", "200", renamed));
    ASSERT_EQ(named.groups.size(), 1u);
    EXPECT_EQ(named.groups.front().fate, DiffGroup::Fate::renamed);
    EXPECT_EQ(named.groups.front().before, "buffers");
    EXPECT_EQ(named.groups.front().name, "row buffers");
    EXPECT_EQ(named.total().change(), 0.0);
    EXPECT_THAT(named.total().parts, IsEmpty());
}

// A clock's new name reaches the groups that it clocks, and changes nothing.
TEST_F(DiffTest, ARenamedClockStillClocksItsGroups)
{
    const std::string before = example("first");
    const std::string after = std::regex_replace(before, std::regex("core clock"), "system clock");
    const Diff diff = of(before, after);
    EXPECT_EQ(diff.total().change(), 0.0);
    ASSERT_EQ(diff.groups.size(), 1u);
    EXPECT_EQ(diff.groups.front().fate, DiffGroup::Fate::renamed);
    const Estimate estimate = estimateOf(before);
    const double watts = groupOf(estimate, "core clock (Slice clocking)").watts +
                         groupOf(estimate, "core clock (Clock distribution)").watts;
    EXPECT_EQ(diff.groups.front().wattsBefore, watts) << "of all that the group reaches";
    EXPECT_EQ(diff.groups.front().wattsAfter, watts);
}

TEST_F(DiffTest, SettingsOutsideOfGroupsArePartsToo)
{
    const auto text = [](const char* ambient, const char* theta, const char* volts, const char* part) {
        return std::string(R"({"device": {"part": ")") + part + R"("}, "environment": {"ambientTemperature": )" +
               ambient + R"(, "thetaJA": )" + theta + R"(}, "rails": {"VCCINT": )" + volts +
               R"(}, "groups": [{"block": "Signal"}]})";
    };
    const Diff diff = of(text("40", "1", "0.8", "zq4410"), text("50", "2", "0.82", "zq5620"));
    expectToAddUp(diff);
    const DiffQuantity& total = diff.total();
    const double before = estimateOf(text("40", "1", "0.8", "zq4410")).side().totalWatts;
    EXPECT_EQ(part(total, "", "environment.ambientTemperature"),
              estimateOf(text("50", "1", "0.8", "zq4410")).side().totalWatts - before);
    EXPECT_EQ(part(total, "", "environment.thetaJA"),
              estimateOf(text("40", "2", "0.8", "zq4410")).side().totalWatts - before);
    EXPECT_EQ(part(total, "", "rails.VCCINT"),
              estimateOf(text("40", "1", "0.82", "zq4410")).side().totalWatts - before);
    EXPECT_EQ(part(total, "", "device"), estimateOf(text("40", "1", "0.8", "zq5620")).side().totalWatts - before);
    EXPECT_NE(part(total, "", "interaction"), 0.0);
    EXPECT_EQ(diff.settings.size(), 4u);
}

TEST_F(DiffTest, AddsUpBetweenDesignsThatHaveNothingInCommon)
{
    const Diff diff = of(example("vision"), example("radio"));
    expectToAddUp(diff);
    EXPECT_NE(diff.total().change(), 0.0);
    EXPECT_GT(diff.groups.size(), 50u);
    EXPECT_THAT(diffHtml(diff), Not(HasSubstr("<script")));
}

TEST_F(DiffTest, AnEarlierResultIsAsGoodAsItsDesign)
{
    for (const char* name : {"first", "vision", "network"}) {
        const std::string text = example(name);
        const std::string result = jsonText(jsonReport(estimateOf(text)));
        const Diff same = of(result, text);
        EXPECT_EQ(same.total().change(), 0.0) << name;
        for (const DiffQuantity& quantity : same.quantities)
            EXPECT_THAT(quantity.parts, IsEmpty()) << name << " " << quantity.quantity.name();
        EXPECT_THAT(same.groups, IsEmpty()) << name;
        EXPECT_THAT(same.settings, IsEmpty()) << name;
    }
    const Diff one = of(jsonText(jsonReport(estimateOf(wires("1000", "200")))), wires("1100", "200"));
    ASSERT_EQ(one.total().parts.size(), 1u);
    EXPECT_EQ(one.total().parts.front().input, "SIGNAL_COUNT");
    Json other = jsonReport(estimateOf(wires("1000", "200")));
    const double watts = other["totalWatts"].get<double>() / 2.0;
    for (const char* place : {"/totalWatts", "/dynamicWatts", "/groups/0/watts", "/sides/0/totalWatts"})
        other[Json::json_pointer(place)] = watts;
    const Diff data = of(jsonText(other), wires("1000", "200"));
    EXPECT_EQ(part(data.total(), "wires", "data"), watts) << "what no input explains is the data's";
    expectToAddUp(data);
    const std::pair<const char*, const char*> bad[] = {
        {R"({"format": 1, "sides": [], "groups": []})", "old.json: looks like a result"},
        {R"({"format": 1, "sides": [{}], "name": "d", "groups": [{"block": "Signl", "name": "a", "count": 1}]})",
         "old.json: there is no block Signl; did you mean Signal"}};
    for (const auto& [result, words] : bad) {
        try {
            of(result, wires("1", "1"));
            ADD_FAILURE() << result;
        } catch (const Error& error) {
            EXPECT_THAT(error.what(), HasSubstr(words));
        }
    }
}

TEST_F(DiffTest, LimitsOfGrowthGateARepository)
{
    const std::string before = m_scratch.write("before.json", wires("1000", "200"));
    const std::string after = m_scratch.write("after.json", wires("1030", "200"));
    const std::string pair = "diff " + before + " " + after;
    EXPECT_EQ(m_scratch.run(pair).code, 0);
    EXPECT_EQ(m_scratch.run(pair + " --fail-above 4%").code, 0) << "3 % more";
    const ToolRun above = m_scratch.run(pair + " --fail-above 2%");
    EXPECT_EQ(above.code, 1);
    EXPECT_THAT(above.err, HasSubstr("more than 2%"));
    EXPECT_EQ(m_scratch.run(pair + " --fail-above 500mW").code, 0);
    EXPECT_EQ(m_scratch.run(pair + " --fail-above 1nW").code, 1);
    EXPECT_EQ(m_scratch.run("diff " + after + " " + before + " --fail-above 0%").code, 0) << "less is no growth";
    const std::pair<const char*, const char*> bad[] = {{"2", "expected a share or a power"},
                                                       {"2A", "--fail-above 2A: "},
                                                       {"-1%", "from 0"},
                                                       {"nan", "expected a share or a power"}};
    for (const auto& [limit, words] : bad) {
        const ToolRun run = m_scratch.run(pair + " --fail-above=" + limit);
        EXPECT_EQ(run.code, 2) << limit;
        EXPECT_THAT(run.err, HasSubstr(words)) << limit;
    }
    EXPECT_EQ(m_scratch.run(pair + " --html " + after).code, 2) << "no page over a design";
}

TEST_F(DiffTest, OneDesignUnderTwoDataDirectories)
{
    const std::string data = m_scratch.copyData();
    const std::string file = Scratch::dataFile(data, "Signal");
    const std::string text = Scratch::read(file);
    const std::regex other(R"(OTHER = ([0-9.]+);)");
    ASSERT_TRUE(std::regex_search(text, other));
    m_scratch.write("data/powercfg/orvane/ZelmOrvaneSignalData.cfg", std::regex_replace(text, other, "OTHER = 0.5;"));
    const std::string design = m_scratch.write("d.json", wires("1000", "200"));
    const ToolRun run = m_scratch.run("diff " + design + " " + design + " --json --old-datadir " + data);
    ASSERT_EQ(run.code, 0) << run.err;
    const Json total = Json::parse(run.out)["quantities"][0];
    const Json before = Json::parse(m_scratch.run("--datadir " + data + " estimate --json " + design).out);
    EXPECT_EQ(total["before"], before["totalWatts"]);
    EXPECT_EQ(total["after"].get<double>(), estimateOf(wires("1000", "200")).side().totalWatts);
    ASSERT_EQ(total["parts"].size(), 1u);
    EXPECT_EQ(total["parts"][0]["group"], "wires");
    EXPECT_EQ(total["parts"][0]["input"], "data");
    EXPECT_NE(total["change"], 0.0);
    EXPECT_THAT(m_scratch.run("diff " + design + " " + design + " --old-datadir " + m_scratch.path("none")).err,
                HasSubstr("no powercfg folder"));
}

} // namespace

} // namespace zelm::test::diffTest

// What groups add up to: by place in the hierarchy, block, rail and clock.

#include "Designs.h"
#include "Tool.h"

#include "host/base/Json.h"
#include "host/base/Text.h"
#include "host/report/Report.h"
#include "host/report/SubtotalsReport.h"

namespace zelm::test::subtotalsTest {

using namespace zelm::host;
using testing::HasSubstr;

namespace {

constexpr const char* kDesign = R"({"groups": [
    {"block": "Clock", "name": "core", "in": "clocks"},
    {"block": "Bram", "name": "taps", "in": "datapath/fir", "clock": "core", "inputs": {"NUM_BRAMS": 3}},
    {"block": "Bram", "name": "queue", "in": "control", "inputs": {"NUM_BRAMS": 2}},
    {"block": "Signal", "name": "wires", "in": "datapath"},
    {"block": "Bram", "name": "spare", "in": "datapath/fir/x"},
    {"block": "Selv", "name": "pads", "count": 8, "inputs": {"OUTPUT_IO_STANDARD": "SSTL12", "OUTPUT_ENABLE": 1}}]})";

double wattsOf(const Estimate& estimate, const std::vector<std::string>& groups)
{
    double watts = 0.0;
    for (const GroupResult& group : estimate.groups)
        watts += std::count(groups.begin(), groups.end(), group.name) != 0 ? group.watts : 0.0;
    return watts;
}

TEST(Subtotals, OfTheHierarchyHoldWhatStandsBelow)
{
    const Estimate estimate = estimateOf(kDesign);
    std::string names;
    for (const Subtotal& sum : subtotals(estimate, By::in))
        names += std::to_string(sum.depth) + sum.name + "=" + std::to_string(sum.groups) + ";";
    // A clock is three groups at work: itself, slice clocking and clock distribution.
    EXPECT_EQ(names, "0clocks=3;0datapath=3;1datapath/fir=2;2datapath/fir/x=1;0control=1;0=1;");
    const std::vector<Subtotal> sums = subtotals(estimate, By::in);
    EXPECT_NEAR(sums[1].watts, wattsOf(estimate, {"taps", "wires", "spare"}), 1e-12);
    EXPECT_NEAR(sums[2].watts, wattsOf(estimate, {"taps", "spare"}), 1e-12);
    EXPECT_NEAR(sums[3].watts, wattsOf(estimate, {"spare"}), 1e-12);
    EXPECT_GT(sums[3].watts, 0.0);
    EXPECT_NEAR(sums[0].watts + sums[1].watts + sums[4].watts + sums[5].watts, estimate.dynamicWatts, 1e-12);
}

TEST(Subtotals, OfBlocksRailsAndClocksAddUpToAll)
{
    const Estimate estimate = estimateOf(kDesign);
    for (const By by : {By::block, By::rail, By::clock}) {
        double watts = 0.0;
        for (const Subtotal& sum : subtotals(estimate, by))
            watts += sum.watts;
        EXPECT_NEAR(watts, estimate.dynamicWatts, 1e-12) << static_cast<int>(by);
    }
    for (const Subtotal& sum : subtotals(estimate, By::rail)) {
        const RailResult* rail = estimate.side().rail(sum.name);
        ASSERT_NE(rail, nullptr) << sum.name;
        EXPECT_NEAR(sum.amperes, rail->dynamicAmperes, 1e-12) << sum.name;
    }
    const std::vector<Subtotal> clocks = subtotals(estimate, By::clock);
    ASSERT_EQ(clocks.size(), 2u);
    EXPECT_EQ(clocks[0].name + ";" + clocks[1].name, "core;");
    EXPECT_EQ(clocks[0].groups, 4u); // the clock's three, and the taps
}

TEST(Subtotals, StandInEveryReport)
{
    const Estimate estimate = estimateOf(kDesign);
    EXPECT_THAT(textReport(estimate, false), HasSubstr("\nHierarchy\n=========\n"));
    EXPECT_THAT(textReport(estimate, false), HasSubstr("\n    x "));
    EXPECT_THAT(csvReport(estimate), HasSubstr("\nin,,datapath/fir/x,,1,,,"));
    const Json json = jsonReport(estimate);
    EXPECT_EQ(json.at("hierarchy")[2].at("in"), "datapath/fir");
    EXPECT_EQ(json.at("hierarchy")[2].at("watts"), subtotals(estimate, By::in)[2].watts);
    EXPECT_EQ(json.at("groups")[3].at("in"), "datapath/fir");
    EXPECT_EQ(json.at("groups")[3].at("clock"), "core");
    EXPECT_THAT(htmlReport(estimate, {}), HasSubstr("<tr><th class=\"t\" scope=\"row\">datapath/fir</th><td>"));
    const Estimate flat = estimateOf(R"({"groups": [{"block": "Bram"}]})");
    EXPECT_THAT(textReport(flat, false), testing::Not(HasSubstr("Hierarchy")));
    EXPECT_TRUE(jsonReport(flat).at("hierarchy").empty());
    EXPECT_THAT(csvReport(flat), testing::Not(HasSubstr("\nin,")));
}

TEST(Subtotals, DontChangeTheEstimate)
{
    std::string flat = kDesign;
    for (std::size_t at = flat.find(", \"in\""); at != std::string::npos; at = flat.find(", \"in\""))
        flat.erase(at, flat.find('"', at + 9) + 1 - at);
    EXPECT_THAT(flat, testing::Not(HasSubstr("datapath")));
    EXPECT_EQ(estimateOf(flat).dynamicWatts, estimateOf(kDesign).dynamicWatts);
}

TEST(Subtotals, AreSortedAndCutAsAsked)
{
    const Estimate estimate = estimateOf(kDesign);
    const auto names = [&](const SubtotalsWish& wish) {
        std::string all;
        const Json report = subtotalsJson(estimate, wish);
        for (const Json& sum : report.at("subtotals"))
            all += sum.at("in").get<std::string>() + ";";
        return all;
    };
    EXPECT_EQ(names({By::in, "", {}}), "clocks;datapath;datapath/fir;datapath/fir/x;control;;");
    EXPECT_EQ(names({By::in, "name", 3}), ";clocks;control;");
    EXPECT_EQ(names({By::in, "groups", 2}), "clocks;datapath;");
    const Json sorted = subtotalsJson(estimate, {By::in, "watts", {}});
    double before = sorted.at("subtotals")[0].at("watts");
    for (const Json& sum : sorted.at("subtotals")) {
        EXPECT_LE(sum.at("watts"), before);
        before = sum.at("watts");
    }
}

TEST(Subtotals, AreAskedForOnTheCommandLine)
{
    const Scratch scratch;
    const std::string file = scratch.write("d.json", kDesign);
    EXPECT_THAT(scratch.run("estimate " + file + " --by block --top 1").out, HasSubstr("Block "));
    EXPECT_THAT(scratch.run("estimate " + file + " --by rail --csv").out,
                testing::StartsWith("rail,groups,dynamic_w,dynamic_a\n"));
    EXPECT_EQ(Json::parse(scratch.run("estimate " + file + " --by clock --json").out).at("by"), "clock");
    const std::pair<const char*, const char*> mistakes[] = {
        {"--by blok", "--by blok: groups add up by in, block, rail or clock; did you mean block"},
        {"--by in --top 0", "--top 0: expected a whole number from 1"},
        {"--by in --top two", "--top two: expected a whole number from 1"},
        {"--by in --sort wats", "--sort wats: expected watts, groups, name or design; did you mean watts?"},
        {"--top 3", "--top needs --by"},
        {"--sort name", "--sort needs --by"},
    };
    for (const auto& [options, words] : mistakes) {
        const ToolRun run = scratch.run("estimate " + file + " " + options);
        EXPECT_EQ(run.code, 2) << options;
        EXPECT_THAT(run.err, HasSubstr(words)) << options;
    }
}

TEST(Subtotals, WantPathsWithNames)
{
    const auto messageOf = [](const std::string& in) {
        try {
            estimateOf("{\"groups\": [\n{\"block\": \"Bram\", \"in\": " + in + "}]}");
        } catch (const Error& error) {
            return std::string(error.what());
        }
        return std::string("no error");
    };
    for (const char* in : {"\"/datapath\"", "\"datapath/\"", "\"datapath//fir\"", "\"/\""})
        EXPECT_THAT(messageOf(in), HasSubstr("test.json:2: groups[0].in: ")) << in;
    EXPECT_THAT(messageOf("\"a//b\""), HasSubstr("\"a//b\" has a part without a name; expected names between slashes"));
    EXPECT_THAT(messageOf("3"), HasSubstr("groups[0].in: expected a text, found the number 3"));
    EXPECT_THAT(messageOf("\"a/a/a/a/a/a/a/a/a/a/a/a/a/a/a/a/a\""), HasSubstr("is 17 deep, at most 16 are read"));
    EXPECT_EQ(messageOf("\"a/a/a/a/a/a/a/a/a/a/a/a/a/a/a/a\""), "no error");
}

// The fields of a CSV row without quotes.
std::vector<std::string> rowOf(const std::string& table, const std::string& start)
{
    const std::size_t at = table.find("\n" + start) + 1;
    return split(table.substr(at, table.find('\n', at) - at), ',');
}

TEST(CsvTables, StandAlone)
{
    const Estimate estimate = estimateOf(kDesign);
    EXPECT_THAT(csvTables(), testing::ElementsAre("groups", "rails", "totals", "supplies", "modes", "mode-groups",
                                                  "mode-rails", "moments", "start-up"));
    EXPECT_THROW(csvTable(estimate, "supplies"), Error); // the design has none
    const std::vector<std::string> taps = rowOf(csvTable(estimate, "groups"), "taps,");
    const GroupResult& group = groupOf(estimate, "taps");
    ASSERT_EQ(taps.size(), 8u);
    EXPECT_EQ(taps[3] + " " + taps[4] + " " + taps[5], "datapath/fir core " + std::string(group.contributions[0].rail));
    EXPECT_EQ(std::stod(taps[6]), group.contributions[0].watts);
    const std::vector<std::string> core = rowOf(csvTable(estimate, "rails"), ",VCCINT,");
    ASSERT_EQ(core.size(), 9u);
    EXPECT_EQ(std::stod(core[4]), estimate.side().rail("VCCINT")->dynamicWatts);
    const std::vector<std::string> total = rowOf(csvTable(estimate, "totals"), ",");
    ASSERT_EQ(total.size(), 6u);
    EXPECT_EQ(std::stod(total[2]), estimate.dynamicWatts);
    EXPECT_EQ(std::stod(total[4]), estimate.side().totalWatts);
}

TEST(CsvTables, AreAskedForBehindTheFlag)
{
    const Scratch scratch;
    const std::string file = scratch.write("d.json", kDesign);
    const std::string groups = scratch.run("estimate " + file + " --csv groups").out;
    EXPECT_THAT(groups, testing::StartsWith("group,block,count,in,clock,rail,dynamic_w,dynamic_a\n"));
    EXPECT_EQ(scratch.run("estimate --csv groups " + file).out, groups);
    EXPECT_EQ(scratch.run("estimate --csv=groups " + file).out, groups);
    EXPECT_THAT(scratch.run("estimate " + file + " --csv").out, testing::StartsWith("kind,process,name,"));
    EXPECT_THAT(scratch.run("estimate --csv " + file).out, testing::StartsWith("kind,process,name,"));
    const ToolRun wrong = scratch.run("estimate " + file + " --csv=group");
    EXPECT_EQ(wrong.code, 2);
    EXPECT_THAT(wrong.err, HasSubstr("--csv group: there is no such table; did you mean groups"));
}

} // namespace

} // namespace zelm::test::subtotalsTest

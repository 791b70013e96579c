// How quantities come about: trees down to what was typed or characterised, as text and as JSON.
#include "Designs.h"
#include "Tool.h"

#include "host/base/Json.h"
#include "host/report/ExplainReport.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <functional>
#include <map>
#include <set>

namespace zelm::test::explainTest {

using namespace zelm::host;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

namespace {

// Lines count: origins tell them.
constexpr const char* kDesign = R"({
  "device": {"part": "zq5620"},
  "environment": {"ambientTemperature": 40,
                  "thetaJA": 0.5},
  "rails": {"VCCINT": 0.81},
  "groups": [
    {"block": "Clock", "name": "core", "inputs": {"CLOCK_FREQ": 321}},
    {"block": "Bram", "name": "taps", "clock": "core", "count": 3, "inputs": {
      "NUM_BRAMS": 40,
      "MODE": "BLKM18"}},
    {"block": "Signal", "name": "wires", "inputs": {"SIGNAL_COUNT": 2000}},
    {"block": "Selv", "name": "pads", "count": 8, "inputs": {"OUTPUT_IO_STANDARD": "SSTL12", "OUTPUT_ENABLE": 1}}]})";

Json explained(const std::string& what, std::size_t depth = kWholeDepth, const std::string& design = kDesign)
{
    const Estimate estimate = estimateOf(design);
    Explanation explanation(estimate);
    return Json::parse(
        explanationJson(explanation, explanation.idOf(namedQuantity(what, estimate)), depth, estimate.design.name));
}

std::string text(const std::string& what, std::size_t depth = kWholeDepth)
{
    const Estimate estimate = estimateOf(kDesign);
    Explanation explanation(estimate);
    return explanationText(explanation, explanation.idOf(namedQuantity(what, estimate)), depth);
}

void forEachNode(const Json& node, const std::function<void(const Json&)>& visit)
{
    visit(node);
    for (const Json& operand : node["operands"])
        forEachNode(operand, visit);
}

std::string keyOf(const Json& node)
{
    if (node.contains("quantity"))
        return node["quantity"];
    return node["group"].get<std::string>() + "." + node["cell"].get<std::string>() + node.value("process", "");
}

// The first node of a cell that tells all of it.
Json nodeOf(const Json& tree, const std::string& key)
{
    Json found;
    forEachNode(tree, [&](const Json& node) {
        if (keyOf(node) == key && !node.contains("repeats"))
            found = node;
    });
    if (found.is_null())
        throw std::runtime_error("the explanation has no " + key);
    return found;
}

std::vector<std::string> operandsOf(const Json& node)
{
    std::vector<std::string> keys;
    for (const Json& operand : node["operands"])
        keys.push_back(keyOf(operand));
    return keys;
}

// The operands' values added up in the order of their terms: what the estimate does, to the bit.
double sumOf(const Json& node)
{
    std::vector<double> terms(node["operands"].size());
    for (const Json& operand : node["operands"])
        terms.at(operand["term"].get<std::size_t>()) = operand.contains("cell")
                                                           ? static_cast<double>(operand["value"].get<float>())
                                                           : operand["value"].get<double>();
    double sum = 0.0;
    for (const double term : terms)
        sum += term;
    return sum;
}

class Explains : public testing::Test {
    const DataDirVariable m_variable{shippedDataDirectory()};
};

TEST_F(Explains, SumsThatAddUpToTheBitLargestFirst)
{
    const Estimate estimate = estimateOf(kDesign);
    for (const NamedQuantity& quantity : quantitiesOf(estimate)) {
        if (quantity.kind == NamedQuantity::Kind::junction)
            continue;
        const Json tree = explained(quantity.name(), 1);
        EXPECT_EQ(tree["value"].get<double>(), valueOf(quantity, estimate)) << quantity.name();
        EXPECT_EQ(sumOf(tree), valueOf(quantity, estimate)) << tree;
        double before = HUGE_VAL;
        for (const Json& operand : tree["operands"]) {
            EXPECT_LE(std::fabs(operand["value"].get<double>()), before) << tree;
            before = std::fabs(operand["value"].get<double>());
        }
    }
}

TEST_F(Explains, TotalsByGroupsAndStaticPower)
{
    const Json tree = explained("total@MAX", 1);
    EXPECT_EQ(tree["format"], 1);
    EXPECT_EQ(tree["quantity"], "total@MAX");
    EXPECT_EQ(tree["unit"], "W");
    EXPECT_THAT(operandsOf(tree), testing::UnorderedElementsAre("static@MAX", "group:core (Slice clocking)",
                                                                "group:core (Clock distribution)", "group:taps",
                                                                "group:wires", "group:pads"));
}

TEST_F(Explains, ContributionsByUnitCountAndVolts)
{
    const Json tree = explained("rail:VCCINT@TYP");
    const Json taps = nodeOf(tree, "group:taps.VCCINT_POWER in A");
    EXPECT_EQ(taps["formula"], "VCCINT_POWER x count / VCCINT");
    const double watts = nodeOf(tree, "taps.VCCINT_POWER")["value"].get<float>();
    EXPECT_EQ(taps["value"].get<double>(), watts * 3 / static_cast<double>(0.81f));
    const Json wires = nodeOf(tree, "group:wires.SIGNAL_POWER in A");
    EXPECT_EQ(wires["formula"], "SIGNAL_POWER x 1e-6 / VCCINT");
}

TEST_F(Explains, CellsByFormulaOperandsAndLookUps)
{
    const Json tree = explained("group:wires");
    const Json capacitance = nodeOf(tree, "wires.WIRE_CAPACITANCE");
    EXPECT_EQ(capacitance["unit"], "pF");
    EXPECT_EQ(capacitance["source"]["file"], "framework/ZelmOrvaneSignalModel.cpp");
    EXPECT_THAT(capacitance["formula"].get<std::string>(), HasSubstr("return nodes * count * perNode;"));
    EXPECT_THAT(operandsOf(capacitance),
                testing::ElementsAre("wires.NUM_NODES_PER_SIGNAL", "wires.SIGNAL_COUNT", "wires.DRIVER_TYPE"));
    ASSERT_EQ(capacitance["lookUps"].size(), 1u);
    const Json& row = capacitance["lookUps"][0];
    EXPECT_EQ(row["table"], "PER_NODE_CAP");
    EXPECT_EQ(row["keys"], Json::array({"OTHER"}));
    // Ten to the first decade less one is 9 nodes; as many signals; the row's own value, each step in single precision.
    const float expected = 9.0f * 2000.0f * row["value"].get<float>();
    EXPECT_EQ(capacitance["value"].get<float>(), expected);
}

TEST_F(Explains, LookUpsByTheLineOfTheDataFile)
{
    const Json tree = explained("total@TYP");
    std::map<std::string, std::vector<std::string>> files;
    std::size_t checked = 0;
    forEachNode(tree, [&](const Json& node) {
        for (const Json& row : node.value("lookUps", Json::array())) {
            if (!row.contains("line"))
                continue;
            std::vector<std::string>& lines = files[row["file"]];
            if (lines.empty())
                lines = split(Scratch::read(row["file"]), '\n');
            const std::string& line = lines.at(row["line"].get<std::size_t>() - 1);
            EXPECT_THAT(line, HasSubstr(row["keys"].back().get<std::string>())) << row;
            ++checked;
        }
    });
    EXPECT_GT(checked, 500u);
}

TEST_F(Explains, InputsByWhereTheyCameFrom)
{
    const Json tree = explained("total@TYP");
    const auto origin = [&](const std::string& key) { return nodeOf(tree, key)["origin"]; };
    const Json design{{"kind", "design"}, {"file", "test.json"}};
    const auto atLine = [&](Json expected, int line) {
        expected["line"] = line;
        return expected;
    };
    EXPECT_EQ(origin("taps.NUM_BRAMS"), atLine(design, 9));
    EXPECT_EQ(origin("taps.MODE"), atLine(design, 10));
    EXPECT_EQ(origin("group:taps count"), atLine(design, 8));
    EXPECT_EQ(origin("ambient"), atLine(design, 3));
    EXPECT_EQ(origin("thetaJA"), atLine(design, 4));
    EXPECT_EQ(origin("taps.VCCINT"), atLine({{"kind", "rails"}, {"file", "test.json"}}, 5));
    EXPECT_EQ(origin("taps.VCCRAM"), atLine({{"kind", "device"}, {"from", "ZQ5620"}, {"file", "test.json"}}, 2));
    EXPECT_EQ(origin("taps.PORT_A_CLOCK"), (Json{{"kind", "carried"}, {"from", "core.CLOCK_FREQ"}}));
    EXPECT_EQ(operandsOf(nodeOf(tree, "taps.PORT_A_CLOCK")),
              std::vector<std::string>{"core (Slice clocking).CLOCK_FREQ"});
    EXPECT_EQ(origin("core (Slice clocking).CLOCK_FREQ"), atLine(design, 7));
    const Json toggles = origin("wires.TOGGLE_RATE");
    EXPECT_EQ(toggles["kind"], "default");
    EXPECT_EQ(toggles["file"], "framework/ZelmOrvaneSignalCells.def");
}

TEST_F(Explains, WhatGroupsCountUpTo)
{
    const Json tree = explained("total@TYP");
    // Three groups of 40 memories on the clock, and no other load.
    const Json loads = nodeOf(tree, "core.BRAMS_USING_CLK");
    EXPECT_EQ(loads["value"], 120);
    EXPECT_EQ(operandsOf(loads), (std::vector<std::string>{"taps.NUM_BRAMS", "group:taps count"}));
    EXPECT_THAT(operandsOf(nodeOf(tree, "core.FANOUT")), testing::Contains("core.FANOUT_PER_SITE"));
}

TEST_F(Explains, TheJunctionByItsHeatBalance)
{
    const Json tree = explained("junction@MAX", 1);
    EXPECT_EQ(operandsOf(tree), (std::vector<std::string>{"ambient", "thetaJA", "total@MAX"}));
    const auto value = [&](std::size_t index) { return tree["operands"][index]["value"].get<double>(); };
    EXPECT_EQ(value(0), 40.0);
    EXPECT_EQ(value(1), 0.5);
    EXPECT_NEAR(tree["value"].get<double>(), 40.0 + 0.5 * value(2), 1e-6);
    // Static power depends on the junction again, which is told once.
    const Json whole = explained("junction@MAX");
    EXPECT_EQ(operandsOf(nodeOf(whole, "static power.JUNCTION_TEMPERATUREMAX")),
              std::vector<std::string>{"junction@MAX"});
}

TEST_F(Explains, WhatOccursAgainOnce)
{
    std::set<std::string> told;
    std::size_t repeated = 0;
    forEachNode(explained("total"), [&](const Json& node) {
        if (node.contains("repeats")) {
            ++repeated;
            EXPECT_TRUE(told.contains(keyOf(node))) << keyOf(node) << " isn't told before it is referred to";
            EXPECT_TRUE(node["operands"].empty());
        } else {
            EXPECT_TRUE(told.insert(keyOf(node)).second) << keyOf(node) << " is told twice";
        }
    });
    EXPECT_GT(repeated, 100u);
}

TEST_F(Explains, SoDeepAsItIsAsked)
{
    const std::function<std::size_t(const Json&)> depthOf = [&](const Json& node) {
        std::size_t depth = 0;
        for (const Json& operand : node["operands"])
            depth = std::max(depth, 1 + depthOf(operand));
        return depth;
    };
    EXPECT_EQ(depthOf(explained("total", 2)), 2u);
    EXPECT_GT(depthOf(explained("total")), 8u);
    EXPECT_EQ(explained("total", 1)["operands"][0]["cut"], true);
}

// Cells recomputed from nothing but what their nodes say: one formula written out by hand.
TEST_F(Explains, EnoughToComputeItAgain)
{
    const Json tree = explained("group:wires.SIGNAL_POWER");
    const auto value = [&](const char* cell) {
        return nodeOf(tree, std::string("wires.") + cell)["value"].get<float>();
    };
    const float power = value("WIRE_CAPACITANCE") * value("VCCINT") * value("VCCINT") * value("TOGGLE_RATE") *
                        value("CLOCK_FREQ") * 0.5f;
    EXPECT_EQ(tree["value"].get<float>(), power);
}

TEST_F(Explains, ARunawayInWords)
{
    const Json tree = explained("total@MAX", kWholeDepth, R"({"device": {"part": "zq5620"},
        "environment": {"ambientTemperature": 100, "thetaJA": 40},
        "groups": [{"block": "Signal", "name": "wires"}]})");
    EXPECT_EQ(tree["value"], Json());
    EXPECT_EQ(tree["valueReason"], "thermal runaway");
    EXPECT_EQ(nodeOf(tree, "static@MAX")["value"], Json());
}

TEST_F(Explains, DynamicPowerAloneWithoutADevice)
{
    const Json tree = explained("total", kWholeDepth, R"({"groups": [{"block": "Signal", "name": "wires"}]})");
    EXPECT_EQ(operandsOf(tree), std::vector<std::string>{"group:wires"});
}

TEST_F(Explains, InTextTooWithFormulasAndLines)
{
    EXPECT_THAT(text("group:wires"),
                AllOf(HasSubstr("group:wires = "), HasSubstr("= what its outputs load rails with"),
                      HasSubstr("framework/ZelmOrvaneSignalModel.cpp:"),
                      HasSubstr("| float computeSignalPower() const"), HasSubstr("PER_NODE_CAP[OTHER] = "),
                      HasSubstr("ZelmOrvaneSignalData.cfg:"), HasSubstr("SIGNAL_COUNT = 2000  number of like signals"),
                      HasSubstr("as the design says, test.json:11"),
                      HasSubstr("TOGGLE_RATE = 0.125  toggles per clock cycle; a clock has 2\n")));
    EXPECT_THAT(text("total", 1), AllOf(HasSubstr(" %"), HasSubstr(" ..."), Not(HasSubstr("compute"))));
}

TEST_F(Explains, FromTheCommandLine)
{
    const Scratch scratch;
    const std::string design = scratch.write("d.json", kDesign);
    const ToolRun run = scratch.run("explain " + design + " total@MAX --depth 1 --json");
    EXPECT_EQ(run.code, 0) << run.err;
    EXPECT_EQ(Json::parse(run.out)["quantity"], "total@MAX");
    const ToolRun wrong = scratch.run("explain " + design + " 'group:wire'");
    EXPECT_EQ(wrong.code, 2);
    EXPECT_THAT(wrong.err, HasSubstr("did you mean wires"));
    EXPECT_EQ(wrong.out, "");
}

} // namespace

} // namespace zelm::test::explainTest

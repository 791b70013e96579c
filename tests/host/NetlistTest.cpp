// Netlists of synthesis as designs: what cells become, hierarchy, clocks, what has no group, and files that are no
// netlist.
#include "Designs.h"
#include "Tool.h"

#include "host/base/Json.h"
#include "host/exchange/NetlistDesign.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <map>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

namespace zelm::test::netlistTest {

using namespace zelm::host;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Pair;
using testing::StartsWith;
using testing::UnorderedElementsAre;

namespace {

// A top with a register of eight bits behind a LUT of two inputs and one of three, two instances of a module with a
// multiplier and a register each, a memory that is read with a clock, a gate that isn't in LUTs, and a check.
constexpr const char* kSmall = R"json({ "creator": "by hand", "modules": {
  "stage": { "ports": {
      "c": { "direction": "input", "bits": [ 2 ] },
      "a": { "direction": "input", "bits": [ 3, 4, 5 ] },
      "q": { "direction": "output", "bits": [ 20 ] } },
    "cells": {
      "m": { "type": "$mul", "parameters": { "A_SIGNED": "0", "B_SIGNED": "0" },
        "port_directions": { "A": "input", "B": "input", "Y": "output" },
        "connections": { "A": [ 3, 4, 5 ], "B": [ 3, 4, 5 ], "Y": [ 6, 7, 8, 9, 10, 11 ] } },
      "r": { "type": "$_DFFE_PP_", "port_directions": { "C": "input", "D": "input", "E": "input", "Q": "output" },
        "connections": { "C": [ 2 ], "D": [ 6 ], "E": [ "1" ], "Q": [ 20 ] } } } },
  "top": { "attributes": { "top": "00000000000000000000000000000001" },
    "ports": {
      "clk": { "direction": "input", "bits": [ 2 ] },
      "in": { "direction": "input", "bits": [ 3, 4, 5 ] },
      "out": { "direction": "output", "bits": [ 30, 31, 60 ] } },
    "cells": {
      "l2": { "type": "$lut", "parameters": { "LUT": "0110", "WIDTH": "10" },
        "port_directions": { "A": "input", "Y": "output" }, "connections": { "A": [ 3, 4 ], "Y": [ 40 ] } },
      "l3": { "type": "$lut", "parameters": { "LUT": "10010110", "WIDTH": 3 },
        "port_directions": { "A": "input", "Y": "output" }, "connections": { "A": [ 40, 4, 5 ], "Y": [ 41 ] } },
      "r2": { "type": "$dff", "parameters": { "WIDTH": "1000" },
        "port_directions": { "CLK": "input", "D": "input", "Q": "output" },
        "connections": { "CLK": [ 2 ], "D": [ 40, 41, 40, 41, 40, 41, 40, 41 ],
          "Q": [ 30, 31, 32, 33, 34, 35, 36, 37 ] } },
      "s.0": { "type": "stage", "connections": { "c": [ 2 ], "a": [ 3, 30, 31 ], "q": [ 50 ] } },
      "s.1": { "type": "stage", "connections": { "c": [ 2 ], "a": [ 50, 50, "0" ], "q": [ 60 ] } },
      "words": { "type": "$mem_v2", "parameters": { "SIZE": "10000000000", "WIDTH": "100", "RD_PORTS": "1",
          "WR_PORTS": "1", "RD_CLK_ENABLE": "1" },
        "connections": { "RD_CLK": [ 2 ], "RD_EN": [ "1" ], "RD_ADDR": [ 30, 31 ], "RD_DATA": [ 70, 71, 72, 73 ],
          "WR_CLK": [ 2 ], "WR_EN": [ 5 ], "WR_ADDR": [ 3 ], "WR_DATA": [ 4 ] } },
      "g": { "type": "$_AND_", "port_directions": { "A": "input", "B": "input", "Y": "output" },
        "connections": { "A": [ 70 ], "B": [ 71 ], "Y": [ 80 ] } },
      "check": { "type": "$assert", "connections": { "A": [ 80 ], "EN": [ "1" ] } } },
    "netnames": { "sum": { "hide_name": 0, "bits": [ 40 ] } } } } })json";

NetlistPlan planOf(const std::string& text, const NetlistWishes& wishes = {},
                   const std::optional<std::string>& top = std::nullopt)
{
    const Netlist netlist = parseNetlist(text, "test.json");
    return plannedGroups(flattened(netlist, top), wishes);
}

std::string complaintOf(const std::string& text, const NetlistWishes& wishes = {},
                        const std::optional<std::string>& top = std::nullopt)
{
    try {
        planOf(text, wishes, top);
    } catch (const Error& error) {
        return error.what();
    }
    return "no error";
}

// "LUTs 3": the names of groups with the count that each holds.
std::vector<std::string> groupsOf(const NetlistPlan& plan)
{
    std::vector<std::string> all;
    for (const NetlistPlan::Group& group : plan.groups)
        all.push_back(group.name + ": " + group.inputs.front().second);
    return all;
}

const NetlistPlan::Group& groupOf(const NetlistPlan& plan, const std::string& name)
{
    for (const NetlistPlan::Group& group : plan.groups) {
        if (group.name == name)
            return group;
    }
    throw std::runtime_error("no group " + name);
}

TEST(NetlistTest, CellsBecomeGroupsByInstanceAndKind)
{
    const NetlistPlan plan = planOf(kSmall);
    EXPECT_EQ(plan.top, "top");
    EXPECT_EQ(plan.instances, 3U);
    EXPECT_EQ(plan.cells, 10U); // l2, l3, r2, words, g, check; m and r, twice
    // Nets: of the LUTs 40 and 41; of registers 30 and 31, not 32 to 37, and, in the stages, 50 and 60; of the
    // multipliers only bit 6 goes on; of the memory 70 and 71; of the gate 80, which only the check reads; the inputs
    // 3, 4 and 5, not the clock.
    EXPECT_THAT(groupsOf(plan),
                ElementsAre("top nets from LUTs: 2", "top nets from registers: 2", "top nets from block memories: 2",
                            "top nets from inputs: 3", "top LUTs of 2 inputs: 1", "top LUTs of 3 inputs: 1",
                            "top registers: 8", "top memory words of 1024 x 4 bits: 1", "s/0 nets from registers: 1",
                            "s/0 nets from multipliers: 1", "s/0 registers: 1", "s/0 multipliers: 1",
                            "s/1 nets from registers: 1", "s/1 nets from multipliers: 1", "s/1 registers: 1",
                            "s/1 multipliers: 1"));
    EXPECT_EQ(groupOf(plan, "s/1 registers").in, "s/1");
    EXPECT_EQ(groupOf(plan, "top registers").in, "");
    ASSERT_EQ(plan.clocks.size(), 1U);
    EXPECT_EQ(plan.clocks[0].name, "clk");
    for (const NetlistPlan::Group& group : plan.groups)
        EXPECT_EQ(group.clock, std::optional<std::size_t>(0)) << group.name;
}

TEST(NetlistTest, WhatHasNoGroupIsListed)
{
    const NetlistPlan plan = planOf(kSmall);
    ASSERT_EQ(plan.unmapped.size(), 1U);
    EXPECT_EQ(plan.unmapped[0].what, "$_AND_");
    EXPECT_EQ(plan.unmapped[0].count, 1U);
    EXPECT_THAT(plan.unmapped[0].fate, HasSubstr("abc -lut 6"));
    EXPECT_EQ(plan.ports.size(), 3U);
    const std::string design = netlistDesign(plan, {});
    EXPECT_THAT(design, AllOf(HasSubstr("In no group: 1 $_AND_ ("), HasSubstr("are in none: clk, in[3], out[3].")));
}

TEST(NetlistTest, RoutingFollowsFromFanOut)
{
    // In the top, 30 and 31 go to a port, a multiplier's A and B, and the memory's address: 4 each. Nodes 1 + 2 x 4 =
    // 9, complexity 10 log10(9 + 1) = 10.
    const NetlistPlan plan = planOf(kSmall);
    const auto& group = groupOf(plan, "top nets from registers");
    EXPECT_THAT(group.inputs, ElementsAre(Pair("SIGNAL_COUNT", "2"), Pair("ROUTING_COMPLEXITY", "10.0"),
                                          Pair("DRIVER_TYPE", "\"FF\"")));
    // 40 goes to the LUT l3 and four registers, 41 to four registers: 4.5 on average, 10 nodes, 10 log10(11) = 10.41.
    EXPECT_EQ(groupOf(plan, "top nets from LUTs").inputs[1].second, "10.4");
}

TEST(NetlistTest, PinsThatALutLeavesFreeDontToggle)
{
    EXPECT_THAT(groupOf(planOf(kSmall), "top LUTs of 3 inputs").inputs,
                ElementsAre(Pair("INSTANCE_COUNT", "1"), Pair("INSTANCE_TYPE", "\"LUT_LOGIC\""),
                            Pair("A1_SIG_RATE", "0"), Pair("A2_SIG_RATE", "0"), Pair("A3_SIG_RATE", "0")));
}

TEST(NetlistTest, DepthAndPlaceOfTheHierarchy)
{
    NetlistWishes wishes;
    wishes.depth = 1;
    wishes.in = "board";
    const NetlistPlan plan = planOf(kSmall, wishes);
    EXPECT_EQ(groupOf(plan, "s registers").inputs.front().second, "2");
    EXPECT_EQ(groupOf(plan, "s registers").in, "board/s");
    EXPECT_EQ(groupOf(plan, "top registers").in, "board");
}

TEST(NetlistTest, TheDesignEstimatesWithoutAWarning)
{
    NetlistWishes wishes;
    wishes.clocks = {"clk=0.1GHz"};
    const std::string design = netlistDesign(planOf(kSmall, wishes), wishes);
    const Estimate estimate = estimateOf(design);
    EXPECT_THAT(estimate.warnings, IsEmpty());
    const auto& registers = test::groupOf(estimate, "top registers");
    EXPECT_EQ(shownInput(registers, "CLOCK_FREQ"), "100 from carried");
    EXPECT_EQ(carriedTo(estimate, "clk.FFS_USING_CLK"), "10"); // 8, and one of each stage
    EXPECT_EQ(carriedTo(estimate, "clk.BRAMS_USING_CLK"), "1");
    EXPECT_EQ(carriedTo(estimate, "clk.DSPS_USING_CLK"), "2");
}

// Logic between two clocks is that of the registers which it feeds; a memory may be on both.
TEST(NetlistTest, EachClockHasItsOwnGroups)
{
    constexpr const char* text = R"json({"modules": {"t": {
      "ports": {"a_clk": {"direction": "input", "bits": [2]}, "b_clk": {"direction": "input", "bits": [3]},
                "d": {"direction": "input", "bits": [4]}, "y": {"direction": "output", "bits": [9]}},
      "cells": {
        "ra": {"type": "$_DFF_P_", "connections": {"C": [2], "D": [4], "Q": [5]}},
        "l": {"type": "$lut", "parameters": {"LUT": "01", "WIDTH": "1"}, "connections": {"A": [5], "Y": [6]}},
        "rb": {"type": "$_DFF_P_", "connections": {"C": [3], "D": [6], "Q": [7]}},
        "behind": {"type": "$lut", "parameters": {"LUT": "01", "WIDTH": "1"}, "connections": {"A": [7], "Y": [9]}},
        "f": {"type": "$mem_v2", "parameters": {"SIZE": "10000000000", "WIDTH": "1", "RD_PORTS": "1", "WR_PORTS": "1",
              "RD_CLK_ENABLE": "1"}, "connections": {"RD_CLK": [3], "RD_EN": [5], "RD_DATA": [8], "WR_CLK": [2]}}}}}})json";
    const NetlistPlan plan = planOf(text);
    const auto clockOf = [&](const std::string& group) { return plan.clocks[*groupOf(plan, group).clock].name; };
    EXPECT_EQ(clockOf("t registers on a_clk"), "a_clk");
    EXPECT_EQ(clockOf("t registers on b_clk"), "b_clk");
    EXPECT_EQ(clockOf("t LUTs of 1 input"), "b_clk"); // both
    EXPECT_EQ(groupOf(plan, "t LUTs of 1 input").inputs.front().second, "2");
    EXPECT_EQ(clockOf("t nets from inputs"), "a_clk");
    EXPECT_EQ(clockOf("t memory f of 1024 x 1 bits"), "b_clk");
    EXPECT_THAT(groupOf(plan, "t memory f of 1024 x 1 bits").inputs,
                testing::Contains(Pair("PORT_B_CLOCK", "\"= f_a_clk\"")));
    EXPECT_THAT(estimateOf(netlistDesign(plan, {})).warnings, IsEmpty());
}

TEST(NetlistTest, MemoriesTakeTheFewestBlocks)
{
    struct Row {
        std::uint64_t depth;
        std::uint64_t width;
        bool both;
        const char* mode;
        std::uint64_t count;
        std::uint64_t deep;
        int portWidth;
    };
    const Row rows[] = {
        {512, 36, false, "BLKM18SDP", 1, 1, 36},  {512, 36, true, "BLKM36", 1, 1, 36},
        {512, 72, false, "BLKM36SDP", 1, 1, 72},  {1024, 18, true, "BLKM18", 1, 1, 18},
        {1024, 32, false, "BLKM36", 1, 1, 36},    {16384, 1, false, "BLKM18", 1, 1, 1},
        {1024, 72, false, "BLKM36SDP", 2, 2, 72}, // two of 1024 x 36 are as many, and both active
        {1024, 72, true, "BLKM36", 2, 1, 36},     {4096, 32, false, "BLKM36", 4, 4, 36},
        {65536, 8, false, "BLKM36", 16, 16, 9},   {20000, 1, false, "BLKM36", 1, 1, 1},
    };
    for (const Row& row : rows) {
        const BlockMemories blocks = blockMemories(row.depth, row.width, row.both);
        const std::string what = std::to_string(row.depth) + " x " + std::to_string(row.width);
        EXPECT_EQ(blocks.mode, row.mode) << what;
        EXPECT_EQ(blocks.count, row.count) << what;
        EXPECT_EQ(blocks.deep, row.deep) << what;
        EXPECT_EQ(blocks.width, row.portWidth) << what;
    }
}

TEST(NetlistTest, MultipliersTakeSlicesOf27By24)
{
    EXPECT_EQ(dspSlices(27, 24, true), 1U);
    EXPECT_EQ(dspSlices(24, 27, true), 1U);
    EXPECT_EQ(dspSlices(27, 24, false), 2U); // 26 x 23 without signs: 24 bits in one, 27 in two
    EXPECT_EQ(dspSlices(27, 27, false), 4U);
    EXPECT_EQ(dspSlices(26, 23, false), 1U);
    EXPECT_EQ(dspSlices(32, 32, true), 4U);
    EXPECT_EQ(dspSlices(32, 16, true), 2U);
    EXPECT_EQ(dspSlices(1, 1, false), 1U);
}

TEST(NetlistTest, RegistersAreKnownByAllTheirNames)
{
    const std::map<std::string, std::string> rows{
        {"$_DFF_P_", "plain"},
        {"$_DFF_NN1_", "asynchronous reset"},
        {"$_DFFE_PN_", "enable"},
        {"$_DFFE_PN0P_", "enable, asynchronous reset"},
        {"$_SDFF_PP0_", "synchronous reset"},
        {"$_SDFFE_PP0N_", "enable, synchronous reset"},
        {"$_SDFFCE_PP0N_", "enable, synchronous reset"},
        {"$_ALDFF_PN_", "asynchronous load"},
        {"$_ALDFFE_PNP_", "enable, asynchronous load"},
        {"$_DFFSR_PPP_", "set and reset"},
        {"$_DFFSRE_PPPN_", "enable, set and reset"},
        {"$sdffce", "enable, synchronous reset"},
        {"$adffe", "enable, asynchronous reset"},
    };
    for (const auto& [type, control] : rows) {
        EXPECT_EQ(roleOf(type).kind, CellKind::flipFlop) << type;
        EXPECT_EQ(roleOf(type).control, control) << type;
    }
    EXPECT_EQ(roleOf("$_DLATCH_PN0_").kind, CellKind::latch);
    EXPECT_EQ(roleOf("$adlatch").kind, CellKind::latch);
    for (const char* other : {"$_FF_", "$_SR_PN_", "$_DFF_", "$ff", "dff", "$_DFF_PPPPP_"})
        EXPECT_EQ(roleOf(other).kind, CellKind::unknown) << other;
}

std::string module(const std::string& name, const std::string& cells)
{
    return "\"" + name + "\": {\"cells\": {" + cells + "}}";
}

TEST(NetlistTest, FilesThatAreNoNetlistAreExplained)
{
    const auto cell = [](const std::string& fields) {
        return "{\"modules\": {\"t\": {\"cells\": {\"c\": {" + fields + "}}}}}";
    };
    const std::pair<std::string, std::string> rows[] = {
        {"", "test.json:1:1: syntax error"},
        {"{\"modules\": {\"t\": {\n\"cells\": {\"c\": {\"type\": \"$lu", "test.json:2:29: syntax error"},
        {"[1]", "test.json: a list, expected an object with modules"},
        {"3", "test.json: 3, expected an object with modules"},
        {"{}", "test.json: has no modules"},
        {"{\"modules\": {}}", "test.json: has no modules"},
        {"{\"modules\": []}", "test.json: modules: a list, expected an object"},
        {"{\"modules\": {\"t\": 3}}", "test.json: modules.t: 3, expected an object"},
        {"{\"modules\": {\"t\": {}, \"t\": {}}}", "test.json: modules.t stands twice"},
        {"{\"modules\": {\"t\": {\"cells\": {\"c\": {\"type\": \"$x\"}, \"c\": {\"type\": \"$x\"}}}}}",
         "test.json: modules.t.cells.c stands twice"},
        {"{\"modules\": {\"t\": {\"ports\": {\"p\": {\"bits\": [\"q\"]}}}}}",
         "test.json: modules.t.ports.p.bits: \"q\", expected a bit: a number from 0 on"},
        {"{\"modules\": {\"t\": {\"ports\": {\"p\": {\"direction\": \"in\"}}}}}",
         "test.json: modules.t.ports.p.direction: \"in\", expected \"input\", \"output\" or \"inout\""},
        {cell("\"parameters\": {}"), "test.json: modules.t.cells.c: has no type"},
        {cell("\"type\": 3"), "test.json: modules.t.cells.c.type: 3, expected a word"},
        {cell("\"type\": \"$lut\", \"connections\": {\"A\": 3}"),
         "test.json: modules.t.cells.c.connections.A: 3, expected a list of bits"},
        {cell("\"type\": \"$lut\", \"connections\": {\"A\": [-1]}"), "expected a bit: a number from 0 on"},
        {cell("\"type\": \"$lut\", \"connections\": {\"A\": [1.5]}"), "expected a bit"},
        {cell("\"type\": \"$lut\", \"connections\": {\"A\": [99999999999]}"), "99999999999, expected a bit"},
        {cell("\"type\": \"$lut\", \"connections\": {\"A\": [[1]]}"), "expected a bit"},
        {cell("\"type\": \"$lut\", \"connections\": {\"A\": [{}]}"), "expected a list of bits"},
        {cell("\"type\": \"$lut\""),
         "modules.t.cells.c: its parameter WIDTH is missing, expected a number of up to 31"},
        {cell("\"type\": \"$lut\", \"parameters\": {\"WIDTH\": \"12\"}"), "its parameter WIDTH is \"12\", expected"},
        {cell("\"type\": \"$lut\", \"parameters\": {\"WIDTH\": \"10\"}"), "WIDTH is 2, and A has 0 bits"},
        {cell("\"type\": \"$mem_v2\", \"parameters\": {\"SIZE\": \"1111111111111111111111111111111\", \"WIDTH\": "
              "\"1111111111111111111111111111111\", \"RD_PORTS\": \"1\", \"WR_PORTS\": \"0\"}"),
         "modules.t.cells.c: 2147483647 words of 2147483647 bits are more than any device holds"},
        {"{\"modules\": {" + module("a", "\"i\": {\"type\": \"b\"}") + "," + module("b", "\"i\": {\"type\": \"a\"}") +
             "}}",
         "every module is held by another; name the one to begin with by --top"},
        {"{\"modules\": {" + module("a", "") + "," + module("b", "") + "}}", "2 modules could be the top, a or b"},
        {"{\"modules\": {" + module("t", "\"i\": {\"type\": \"b\", \"connections\": {\"dat\": [1]}}") +
             ", \"b\": {\"ports\": {\"data\": {\"direction\": \"input\", \"bits\": [1]}}}}}",
         "modules.t.cells.i.connections.dat: b has no such port; did you mean data?"},
    };
    for (const auto& [text, words] : rows)
        EXPECT_THAT(complaintOf(text), HasSubstr(words)) << text;
}

TEST(NetlistTest, TopsThatArentThereAndCirclesAreExplained)
{
    EXPECT_EQ(complaintOf(kSmall, {}, "tpo"), "test.json: there is no module tpo; did you mean top?");
    EXPECT_EQ(complaintOf("{\"modules\": {" + module("a", "\"i\": {\"type\": \"b\"}") + "," +
                              module("b", "\"i\": {\"type\": \"a\"}") + "}}",
                          {}, "a"),
              "test.json: modules.a holds itself");
    NetlistWishes wishes;
    wishes.clocks = {"ckl=200MHz"};
    EXPECT_THAT(complaintOf(kSmall, wishes), HasSubstr("has no clock of that name; did you mean clk?"));
    wishes.clocks = {"clk=fast"};
    EXPECT_THAT(complaintOf(kSmall, wishes), HasSubstr("fast is no frequency"));
    wishes.clocks = {"clk"};
    EXPECT_THAT(complaintOf(kSmall, wishes), HasSubstr("is not of the form NAME=FREQUENCY"));
}

// Two of the next in each of sixty modules.
TEST(NetlistTest, InstancesWithoutEndAreRefused)
{
    std::string modules = module("m60", "");
    for (int i = 59; i >= 0; --i) {
        const std::string next = "{\"type\": \"m" + std::to_string(i + 1) + "\"}";
        modules += ", " + module("m" + std::to_string(i), "\"a\": " + next + ", \"b\": " + next);
    }
    // 1 + 2 + 4 + ... + 2^60 = 2^61 - 1
    EXPECT_EQ(complaintOf("{\"modules\": {" + modules + "}}"),
              "test.json: makes 2.306e+18 instances of modules, more than 10000");
    std::string chain = module("m400", "");
    for (int i = 399; i >= 0; --i)
        chain += ", " + module("m" + std::to_string(i), "\"a\": {\"type\": \"m" + std::to_string(i + 1) + "\"}");
    EXPECT_EQ(complaintOf("{\"modules\": {" + chain + "}}"), "test.json: modules hold each other more than 200 deep");
    std::string deep = "{\"modules\": {\"t\": {\"attributes\": {\"x\": ";
    for (int i = 0; i < 100000; ++i)
        deep += "{\"x\": ";
    EXPECT_THAT(complaintOf(deep), HasSubstr("objects stand more than 64 deep in each other"));
}

TEST(NetlistTest, TheToolWritesTheDesignAndTellsTheRest)
{
    const Scratch scratch;
    const std::string netlist = scratch.write("n.json", kSmall);
    const ToolRun run = scratch.run("import netlist " + netlist + " --part zq4410 -o " + scratch.path("d.json"));
    EXPECT_EQ(run.code, 0) << run.err;
    EXPECT_THAT(run.out, AllOf(StartsWith("top: 10 cells in 3 instances of modules\n"), HasSubstr("registers: enable"),
                               HasSubstr("$_AND_"), HasSubstr("clock clk is taken at 200 MHz")));
    EXPECT_EQ(scratch.run("format --check " + scratch.path("d.json")).code, 0);
    EXPECT_EQ(scratch.run("estimate --strict " + scratch.path("d.json")).code, 0);
    const ToolRun shown = scratch.run("import netlist - --clock clk=100MHz < " + netlist);
    EXPECT_THAT(shown.out, StartsWith("{\n  \"name\": \"top\""));
    EXPECT_THAT(shown.err, HasSubstr("in no group: 1 $_AND_"));
    const ToolRun wrong = scratch.run("import netlist " + netlist + " --part zq44l0 -o " + scratch.path("e.json"));
    EXPECT_EQ(wrong.code, 2);
    EXPECT_THAT(wrong.err, HasSubstr("zq44l0"));
    EXPECT_EQ(scratch.run("import netlist " + netlist + " -o " + netlist).code, 2);
}

// ---- Against the synthesis itself ----

bool missing(const std::string& program)
{
    return std::system(("command -v " + program + " >/dev/null 2>&1").c_str()) != 0;
}

// Cells by type as the synthesis's own statistics count them over the whole hierarchy.
std::map<std::string, std::size_t> statOf(const std::string& text, bool hierarchy)
{
    std::map<std::string, std::size_t> counts;
    std::istringstream lines(hierarchy ? text.substr(text.find("=== design hierarchy ===")) : text);
    const std::regex row(R"(\s+(\$\S+)\s+(\d+)\s*)");
    for (std::string line; std::getline(lines, line);) {
        if (std::smatch match; std::regex_match(line, match, row))
            counts[match[1]] += std::stoul(match[2]);
    }
    return counts;
}

TEST(NetlistTest, CountsAreThoseOfTheSynthesis)
{
    if (missing("yosys"))
        GTEST_SKIP() << "there is no yosys here, of the package yosys";
    const Scratch scratch;
    const std::string folder = ZELM_SOURCE_DIR "/examples/rtl/";
    for (const std::string name : {"fir", "parser", "processor"}) {
        for (const bool flat : {false, true}) {
            const std::string what = name + (flat ? ", flat" : "");
            const std::string command = "cd " + folder + " && yosys -q -p 'read_verilog " + name + "/" + name +
                                        ".v; hierarchy -top " + name + "; script synth.ys; " +
                                        (flat ? "flatten; clean; " : "") + "write_json " + scratch.path("n.json") +
                                        "; tee -q -o " + scratch.path("stat") + " stat'";
            ASSERT_EQ(std::system((command + " >/dev/null 2>&1").c_str()), 0) << command;
            const NetlistPlan plan = planOf(Scratch::read(scratch.path("n.json")));
            EXPECT_THAT(plan.unmapped, IsEmpty()) << what;
            std::map<std::string, std::size_t> counts;
            for (const NetlistPlan::Counted& counted : plan.mapped)
                counts[counted.what] += counted.count;
            EXPECT_EQ(counts, statOf(Scratch::read(scratch.path("stat")), !flat)) << what;
            EXPECT_THAT(estimateOf(netlistDesign(plan, {})).warnings, IsEmpty()) << what;
        }
    }
}

} // namespace

} // namespace zelm::test::netlistTest

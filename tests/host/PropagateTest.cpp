// Probabilities and densities through LUTs and registers, by hand and by enumeration, and a design that takes them.
#include "Designs.h"
#include "Tool.h"

#include "host/exchange/Propagate.h"

#include <gmock/gmock.h>

#include <random>
#include <string>
#include <vector>

namespace zelm::test::propagateTest {

using namespace zelm::host;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

namespace {

constexpr double kNear = 1e-12;

TEST(PropagateTest, LutsOfTwoInputsByHand)
{
    const std::vector<NetActivity> coins{{0.5, 0.5}, {0.5, 0.5}};
    const NetActivity both = throughLut(0b1000, coins); // 1 in a quarter, and twice running in a sixteenth
    EXPECT_NEAR(both.probability, 0.25, kNear);
    EXPECT_NEAR(both.density, 2 * (0.25 - 0.0625), kNear);
    const NetActivity odd = throughLut(0b0110, {{0.5, 0.1}, {0.5, 0.2}}); // one changes and the other doesn't
    EXPECT_NEAR(odd.density, 0.1 * 0.8 + 0.9 * 0.2, kNear);
    const NetActivity inverted = throughLut(0b01, {{0.2, 0.1}});
    EXPECT_NEAR(inverted.probability, 0.8, kNear);
    EXPECT_NEAR(inverted.density, 0.1, kNear);
    const NetActivity let = throughLut(0b1000, {{0.3, 0.2}, {1.0, 0.0}}); // an enable that is on
    EXPECT_NEAR(let.probability, 0.3, kNear);
    EXPECT_NEAR(let.density, 0.2, kNear);
    EXPECT_EQ(throughLut(0b1111, coins).density, 0.0);
}

// All pairs of states, one after the other, each with the product of its inputs' chances.
TEST(PropagateTest, LutsOfSixInputsAsAnEnumerationHasThem)
{
    std::mt19937_64 random(7);
    std::uniform_real_distribution<double> share(0.0, 1.0);
    for (int round = 0; round < 20; ++round) {
        const std::uint64_t table = random();
        std::vector<NetActivity> inputs;
        for (int i = 0; i < 6; ++i) {
            const double p = share(random);
            inputs.push_back({p, share(random) * 2.0 * std::min(p, 1.0 - p)});
        }
        double one = 0.0;
        double changes = 0.0;
        for (unsigned now = 0; now < 64; ++now) {
            for (unsigned then = 0; then < 64; ++then) {
                double chance = 1.0;
                for (unsigned i = 0; i < 6; ++i) {
                    const bool a = ((now >> i) & 1U) != 0;
                    const bool b = ((then >> i) & 1U) != 0;
                    const double half = inputs[i].density / 2.0;
                    chance *= a != b ? half : a ? inputs[i].probability - half : 1.0 - inputs[i].probability - half;
                }
                one += ((table >> now) & 1U) != 0 ? chance : 0.0;
                changes += ((table >> now) & 1U) != ((table >> then) & 1U) ? chance : 0.0;
            }
        }
        const NetActivity found = throughLut(table, inputs);
        EXPECT_NEAR(found.probability, one, 1e-9) << table;
        EXPECT_NEAR(found.density, changes, 1e-9) << table;
    }
}

TEST(PropagateTest, RegistersThatLoadInSomeCyclesByHand)
{
    EXPECT_NEAR(throughEnable({0.3, 0.2}, 1.0).density, 0.2, kNear);
    // New at every cycle: a load finds a fresh coin, which differs in half of the loads.
    EXPECT_NEAR(throughEnable({0.5, 0.5}, 0.5).density, 0.25, kNear);
    // Turning at every cycle: after k cycles different if k is odd, which is 1/2 + 1/8 + 1/32 + ... = 2/3 of the loads.
    EXPECT_NEAR(throughEnable({0.5, 1.0}, 0.5).density, 0.5 * 2.0 / 3.0, kNear);
    EXPECT_EQ(throughEnable({0.5, 0.5}, 0.0).density, 0.0);
    EXPECT_EQ(throughEnable({1.0, 0.0}, 0.5).density, 0.0);
}

// Cells are written "name type LUT inputs > output" into a module with a clock (bit 2), a reset (3) and data (4, 5).
std::string netlistOf(const std::string& cells)
{
    return R"({"modules": {"t": {"ports": {"clk": {"direction": "input", "bits": [2]},
        "reset": {"direction": "input", "bits": [3]}, "d": {"direction": "input", "bits": [4, 5]},
        "q": {"direction": "output", "bits": [10, 11, 12]}}, "cells": {)" +
           cells + R"(}, "netnames": {"reset": {"hide_name": 0, "bits": [3]}, "d": {"hide_name": 0, "bits": [4, 5]},
        "q": {"hide_name": 0, "bits": [10, 11, 12]}}}}})";
}

std::string lut(const std::string& name, const std::string& table, const std::string& inputs, int output)
{
    const std::size_t width = table.size() == 2 ? 1 : table.size() == 4 ? 2 : 3;
    return "\"" + name + R"(": {"type": "$lut", "parameters": {"WIDTH": )" + std::to_string(width) + R"(, "LUT": ")" +
           table + R"("}, "connections": {"A": [)" + inputs + R"(], "Y": [)" + std::to_string(output) + "]}}";
}

std::string flipFlop(const std::string& type, int data, int output, const std::string& more = "")
{
    return "\"r" + std::to_string(output) + R"(": {"type": ")" + type + R"(", "connections": {"C": [2], "D": [)" +
           std::to_string(data) + R"(], "Q": [)" + std::to_string(output) + "]" + more + "}}";
}

struct Propagated {
    Propagation result;
    std::vector<double> density; // of q
    std::vector<double> probability;
};

Propagated runOf(const std::string& cells, const std::vector<std::string>& inputs = {})
{
    const Netlist netlist = parseNetlist(netlistOf(cells), "test.json");
    const FlatNetlist flat = flattened(netlist, std::nullopt);
    Propagated run{propagated(flat, inputs), {}, {}};
    for (const NetBit bit : netlist.modules[0].at(netlist.modules[0].ports[3].bits)) {
        run.density.push_back(run.result.nets[flat.net(0, bit)].density);
        run.probability.push_back(run.result.nets[flat.net(0, bit)].probability);
    }
    return run;
}

using testing::DoubleNear;

TEST(PropagateTest, ACounterHalvesAtEveryBit)
{
    const std::string cells = lut("l0", "01", "10", 20) + "," + lut("l1", "0110", "10, 11", 21) + "," +
                              lut("l2", "01111000", "10, 11, 12", 22) + "," + flipFlop("$_DFF_P_", 20, 10) + "," +
                              flipFlop("$_DFF_P_", 21, 11) + "," + flipFlop("$_DFF_P_", 22, 12);
    const Propagated run = runOf(cells);
    EXPECT_TRUE(run.result.settled);
    EXPECT_THAT(run.density, ElementsAre(DoubleNear(1.0, 1e-4), DoubleNear(0.5, 1e-4), DoubleNear(0.25, 1e-4)));
    EXPECT_THAT(run.probability, ElementsAre(DoubleNear(0.5, 1e-4), DoubleNear(0.5, 1e-4), DoubleNear(0.5, 1e-4)));
}

TEST(PropagateTest, EnablesAndResetsOfBothPolarities)
{
    // 10: loads data 4 while data 5 is 1; 11: the same with an enable that is 0 when on; 12: held in reset, to 1.
    const std::string cells = flipFlop("$_DFFE_PP_", 4, 10, R"(, "E": [5])") + "," +
                              flipFlop("$_DFFE_PN_", 4, 11, R"(, "E": [5])") + "," +
                              flipFlop("$_SDFF_PP1_", 4, 12, R"(, "R": [3])");
    const Propagated run = runOf(cells, {"d[0]=0.5,0.5", "d[1]=0.25,0.1", "reset=1,0"});
    EXPECT_THAT(run.density,
                ElementsAre(DoubleNear(0.25 * 0.5, 1e-4), DoubleNear(0.75 * 0.5, 1e-4), DoubleNear(0, 1e-4)));
    EXPECT_THAT(run.probability[2], DoubleNear(1.0, 1e-4));
    const Propagated low = runOf(flipFlop("$_SDFF_PN0_", 4, 12, R"(, "R": [3])"), {"d=0.5,0.5", "reset=0,0"});
    EXPECT_THAT(low.probability[2], DoubleNear(0.0, 1e-4));
}

TEST(PropagateTest, InputsThatHangTogetherAreCounted)
{
    // 20 is data 4 inverted, 10 is both, which never is 1 and counts as a product of independents: 0.25.
    const Propagated run =
        runOf(lut("i", "01", "4", 20) + "," + lut("a", "1000", "4, 20", 10) + "," + lut("b", "1000", "4, 5", 11));
    ASSERT_EQ(run.result.parts.size(), 1U);
    EXPECT_EQ(run.result.parts[0].luts, 3U);
    EXPECT_EQ(run.result.parts[0].reconvergent, 1U);
    EXPECT_THAT(run.probability[0], DoubleNear(0.25, kNear));
}

TEST(PropagateTest, CirclesWithoutARegisterEnd)
{
    const Propagated run = runOf(lut("a", "01", "11", 10) + "," + lut("b", "01", "10", 11));
    EXPECT_EQ(run.result.looped, 2U);
}

TEST(PropagateTest, InputsThatCantBeAreExplained)
{
    const auto said = [](const std::string& wish) -> std::string {
        try {
            runOf(lut("i", "01", "4", 10), {wish});
        } catch (const Error& error) {
            return error.what();
        }
        return "no error";
    };
    EXPECT_EQ(said("rest=0,0"), "--input rest=0,0: test.json has no input of that name; did you mean reset?");
    EXPECT_EQ(said("q=0,0"), "--input q=0,0: test.json has no input of that name; did you mean d?"); // an output
    EXPECT_THAT(said("reset"), HasSubstr("is not of the form PORT=PROBABILITY,DENSITY"));
    EXPECT_THAT(said("reset=1"), HasSubstr("is not of the form PORT=PROBABILITY,DENSITY"));
    EXPECT_THAT(said("reset=2,0"), HasSubstr("a probability is from 0 to 1"));
    EXPECT_THAT(said("reset=0.1,0.3"),
                HasSubstr("a net that is 1 in 0.1 of the cycles changes in 0.2 of them at most"));
    EXPECT_EQ(said("d[1]=0.5,1"), "no error");
}

TEST(PropagateTest, TheToolSetsTheRatesOfTheDesignsGroups)
{
    const Scratch scratch;
    const std::string netlist =
        scratch.write("n.json", netlistOf(lut("x", "0110", "4, 5", 20) + "," + flipFlop("$_DFF_P_", 20, 10)));
    const std::string design = scratch.path("d.json");
    ASSERT_EQ(scratch.run("import netlist " + netlist + " -o " + design).code, 0);
    const ToolRun run = scratch.run("propagate " + netlist + " --design " + design +
                                    " --input d[0]=0.5,0.1 --input d[1]=0.5,0.2 --input reset=0,0 --nets " +
                                    scratch.path("nets.csv") + " -o " + scratch.path("e.json"));
    ASSERT_EQ(run.code, 0) << run.err;
    EXPECT_THAT(run.out, AllOf(StartsWith("5 groups have toggle rates of the netlist"), HasSubstr("(top)")));
    const Estimate estimate = estimateOf(Scratch::read(scratch.path("e.json")));
    for (const auto& [group, rate] : {std::pair("t registers", "0.26"), std::pair("t LUTs of 2 inputs", "0.26"),
                                      std::pair("t nets from inputs", "0.15"), std::pair("t nets from LUTs", "0.26")})
        EXPECT_EQ(shownInput(groupOf(estimate, group), "TOGGLE_RATE"), std::string(rate) + " from design") << group;
    EXPECT_THAT(estimate.warnings, IsEmpty());
    EXPECT_EQ(scratch.run("format --check " + scratch.path("e.json")).code, 0);
    EXPECT_THAT(Scratch::read(scratch.path("nets.csv")),
                HasSubstr("density\nreset,0,0\nd[0],0.5,0.1\nd[1],0.5,0.2\nq[0],0.5,0.26\n"));
    const ToolRun other = scratch.run("propagate " + netlist + " --design " +
                                      ZELM_SOURCE_DIR "/examples/first.json -o " + scratch.path("f.json"));
    EXPECT_THAT(other.out, HasSubstr("the design has no group \"t registers\""));
    EXPECT_THAT(scratch.run("propagate " + netlist).err, HasSubstr("--design"));
    const std::string odd =
        scratch.write("odd.json", R"({"groups": [{"block": "CleLogic", "name": "t registers", "inputs": [1]}]})");
    EXPECT_THAT(scratch.run("propagate " + netlist + " --design " + odd).err,
                HasSubstr("odd.json: the inputs of group \"t registers\" are [1], expected an object"));
}

} // namespace

} // namespace zelm::test::propagateTest

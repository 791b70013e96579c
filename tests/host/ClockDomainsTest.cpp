#include "Designs.h"

#include <gmock/gmock.h>

namespace zelm::test::clockDomainsTest {

using namespace zelm::host;
using testing::HasSubstr;

namespace {

std::string domain(const std::string& frequency, const std::string& clockInputs = "", const std::string& count = "1")
{
    return R"({"device": {"part": "zq4410"}, "groups": [
        {"block": "Clock", "name": "core", "count": )" +
           count + R"(, "inputs": {"CLOCK_FREQ": )" + frequency + clockInputs + R"(}},
        {"block": "Clock", "name": "other", "inputs": {"CLOCK_FREQ": 100}},
        {"block": "Signal", "name": "wires", "clock": "core"},
        {"block": "CleLogic", "name": "registers", "clock": "core", "count": 2,
         "inputs": {"INSTANCE_COUNT": 1000, "INSTANCE_TYPE": "REG_FF"}},
        {"block": "CleLogic", "name": "LUTs", "clock": "core", "inputs": {"INSTANCE_COUNT": 5000}},
        {"block": "CleLogic", "name": "shift registers", "clock": "core",
         "inputs": {"INSTANCE_COUNT": 90, "INSTANCE_TYPE": "LUT_SRL"}},
        {"block": "CleLogic", "name": "small memories", "clock": "core",
         "inputs": {"INSTANCE_COUNT": 33, "INSTANCE_TYPE": "LUT_DRAM"}},
        {"block": "CleLogic", "name": "unclocked registers", "inputs": {"INSTANCE_COUNT": 700, "INSTANCE_TYPE": "REG_FF"}},
        {"block": "Bram", "name": "buffers", "clock": "core", "inputs": {"NUM_BRAMS": 5, "PORT_B_CLOCK": 80}},
        {"block": "Plam", "name": "tables", "clock": "core", "inputs": {"NUM_PLAMS": 3}},
        {"block": "DspCplx", "name": "mixers", "clock": "core", "inputs": {"NUM_DSP": 7}},
        {"block": "DspInt24", "name": "filters", "clock": "core", "inputs": {"NUM_DSP": 4}},
        {"block": "Iologic", "name": "I/O registers", "clock": "core"}]})";
}

void expectLoads(const Estimate& result, const std::vector<std::pair<std::string, std::string>>& loads)
{
    for (const auto& [cell, count] : loads) {
        EXPECT_EQ(carriedTo(result, "core." + cell), count) << cell;
        EXPECT_EQ(shownInput(groupOf(result, "core"), cell), count + " from carried");
    }
}

TEST(ClockDomains, LoadsAreTheSumOfTheGroupsThatNameTheClock)
{
    // Registers 2 x 1000; sites 2000 / 8 + 90 / 8 and 33 / 8 rounded up + 5 + 3 + 18 = 250 + 12 + 5 + 26.
    const Estimate result = estimateOf(domain("250"));
    expectLoads(result, {{"FFS_USING_CLK", "2000"},
                         {"SRLS_USING_CLK", "90"},
                         {"LUTRAMS_USING_CLK", "33"},
                         {"BRAMS_USING_CLK", "5"},
                         {"PLAMS_USING_CLK", "3"},
                         {"DSPS_USING_CLK", "18"}, // 2 x 7 + 4
                         {"FANOUT", "293"},
                         {"NUM_FSR", "8"}}); // the part's
    EXPECT_EQ(shownInput(groupOf(result, "other"), "FFS_USING_CLK"), "1 from default");
    EXPECT_EQ(carriedTo(result, "other.FANOUT"), "nothing");
}

TEST(ClockDomains, LoadsSetByHandWinAndMakeTheSites)
{
    // 1600 / 8 + 12 + 5 + 26 = 243 sites, of 2 each.
    const Estimate result = estimateOf(domain("250", R"(, "FFS_USING_CLK": 1600, "FANOUT_PER_SITE": 2, "NUM_FSR": 4)"));
    EXPECT_EQ(shownInput(groupOf(result, "core"), "FFS_USING_CLK"), "1600 from design");
    EXPECT_EQ(shownInput(groupOf(result, "core"), "NUM_FSR"), "4 from design");
    expectLoads(result, {{"SRLS_USING_CLK", "90"}, {"FANOUT", "486"}});
}

TEST(ClockDomains, LikeNetsShareTheLoads)
{
    // Three nets: 2000 / 3 = 667, 90 / 3, 33 / 3, and 5, 3, 18 over 3; sites 84 + 4 + 2 + 2 + 1 + 6.
    expectLoads(estimateOf(domain("250", "", "3")), {{"FFS_USING_CLK", "667"},
                                                     {"SRLS_USING_CLK", "30"},
                                                     {"LUTRAMS_USING_CLK", "11"},
                                                     {"BRAMS_USING_CLK", "2"},
                                                     {"PLAMS_USING_CLK", "1"},
                                                     {"DSPS_USING_CLK", "6"},
                                                     {"FANOUT", "99"}});
}

TEST(ClockDomains, OneEditChangesADomain)
{
    const Estimate fast = estimateOf(domain("250"));
    const Estimate slow = estimateOf(domain("125"));
    const std::pair<const char*, const char*> inputs[] = {{"wires", "CLOCK_FREQ"},   {"registers", "CLOCK_FREQ"},
                                                          {"LUTs", "CLOCK_FREQ"},    {"buffers", "PORT_A_CLOCK"},
                                                          {"tables", "CLOCK_FREQ"},  {"mixers", "CLOCK_FREQ"},
                                                          {"filters", "CLOCK_FREQ"}, {"I/O registers", "FREQUENCY"}};
    for (const auto& [group, cell] : inputs) {
        EXPECT_EQ(shownInput(groupOf(fast, group), cell), "250 from carried") << group;
        EXPECT_EQ(shownInput(groupOf(slow, group), cell), "125 from carried") << group;
        EXPECT_EQ(carriedTo(fast, std::string(group) + "." + cell), "250") << group;
    }
    EXPECT_EQ(shownInput(groupOf(fast, "buffers"), "PORT_B_CLOCK"), "80 from design");
    EXPECT_EQ(shownInput(groupOf(fast, "unclocked registers"), "CLOCK_FREQ"), "200 from default");
    for (const char* group : {"wires", "registers", "core (Slice clocking)"})
        EXPECT_NEAR(groupOf(slow, group).watts, groupOf(fast, group).watts / 2.0, 1e-9) << group;
    EXPECT_GT(groupOf(fast, "registers").watts, 0.0);
}

TEST(ClockDomains, AClockWithoutAFrequencyHasItsDefault)
{
    const Estimate result = estimateOf(R"({"groups": [{"block": "Clock", "name": "c"},
                                           {"block": "Bram", "name": "b", "clock": "c"}]})");
    EXPECT_EQ(shownInput(groupOf(result, "b"), "PORT_A_CLOCK"), "200 from carried");
    EXPECT_EQ(shownInput(groupOf(result, "c"), "NUM_FSR"), "1 from default"); // no device
}

std::string refusal(const std::string& groups)
{
    try {
        parseDesign("test.json", "{\"groups\": [\n" + groups + "]}");
    } catch (const Error& error) {
        return error.what();
    }
    return "accepted: " + groups;
}

TEST(ClockDomains, UnknownClocksAndBlocksWithoutOneAreRefused)
{
    const std::string clock = R"({"block": "Clock", "name": "core clock"}, {"block": "Bram", "name": "core clocks"},)";
    EXPECT_EQ(refusal(clock + "\n" + R"({"block": "Bram", "clock": "core clok"})"),
              "test.json:3: groups[2].clock: no group of Clock is named \"core clok\"; did you mean core clock?");
    EXPECT_THAT(refusal(clock + "\n" + R"({"block": "Bram", "clock": "core clocks"})"),
                HasSubstr("groups[2].clock: no group of Clock is named \"core clocks\""));
    EXPECT_EQ(refusal(clock + "\n" + R"({"block": "Veko", "clock": "core clock"})"),
              "test.json:3: groups[2].clock: a group of Veko takes no clock of the fabric");
    EXPECT_THAT(refusal(R"({"block": "Bram", "clock": 7})"), HasSubstr("groups[0].clock: expected a text"));
}

} // namespace

} // namespace zelm::test::clockDomainsTest

// What a design can't be, though each of its groups could: traffic, loads, pads, nibbles, things counted twice.

#include "Designs.h"

#include <gmock/gmock.h>

namespace zelm::test::physicsAcrossTest {

using namespace zelm::host;
using testing::Contains;
using testing::Each;
using testing::HasSubstr;
using testing::Not;

namespace {

std::vector<std::string> warningsOf(const std::string& groups, const std::string& part = "zq4410")
{
    return estimateOf(R"({"device": {"part": ")" + part + R"("}, "groups": [)" + groups + "]}").warnings;
}

std::string controller(const char* bandwidths, const char* width = "64")
{
    return std::string(R"({"block": "Ddrmc", "name": "memory", "inputs": {"DATA_RATE": 3200, "DATA_WIDTH": )") + width +
           ", " + bandwidths + "}}";
}

TEST(PhysicsAcross, ControllersBeyondTheirBus)
{
    // 64 bits / 8 x 3200 Mb/s = 25,600 MB/s
    const auto warnings = [](const char* bandwidths) { return warningsOf(controller(bandwidths)); };
    EXPECT_THAT(warnings(R"("READ_BAND_WIDTH": 60000, "WRITE_BAND_WIDTH": 40000)"),
                Contains("group \"memory\": READ_BAND_WIDTH + WRITE_BAND_WIDTH are 100 GB/s of the bus's peak of 25.6 "
                         "GB/s (64 bits at 3200 Mb/s)"));
    EXPECT_THAT(warnings(R"("READ_BAND_WIDTH": 12800, "WRITE_BAND_WIDTH": 12800)"), Each(Not(HasSubstr("peak"))));
    EXPECT_THAT(warnings(R"("READ_BAND_WIDTH": 12801, "WRITE_BAND_WIDTH": 12800)"), Contains(HasSubstr("peak")));
}

TEST(PhysicsAcross, NetworkTrafficBeyondTheControllers)
{
    const std::string paths =
        R"({"block": "Noc", "name": "a", "count": 2, "inputs": {"DATA_PATH": "PL_TO_DDRC", "BANDWITH_READ": 4000, "BANDWITH_WRITE": 4000}},
           {"block": "Noc", "name": "b", "inputs": {"DATA_PATH": "PS_TO_DDRC", "BANDWITH_READ": 3000, "BANDWITH_WRITE": 1300}},
           {"block": "Noc", "name": "c", "inputs": {"DATA_PATH": "PL_TO_PL", "BANDWITH_READ": 90000, "BANDWITH_WRITE": 90000}},)";
    // 2 x 8000 + 4300 = 20,300 MB/s; 5 percent more than declared are rounding.
    EXPECT_THAT(warningsOf(paths + controller(R"("READ_BAND_WIDTH": 5000, "WRITE_BAND_WIDTH": 5000)")),
                Contains(HasSubstr(
                    "the network on chip carries 20.3 GB/s to memory, and the memory controllers declare 10 GB/s")));
    EXPECT_THAT(warningsOf(paths + controller(R"("READ_BAND_WIDTH": 10000, "WRITE_BAND_WIDTH": 9333)")),
                Contains(HasSubstr("carries 20.3 GB/s"))); // 1.05 x 19,333 = 20,299.65
    EXPECT_THAT(warningsOf(paths + controller(R"("READ_BAND_WIDTH": 10000, "WRITE_BAND_WIDTH": 9334)")),
                Each(Not(HasSubstr("carries")))); // 20,300.7
}

TEST(PhysicsAcross, ClockLoadsBeyondTheDevice)
{
    // ZQ4410: 1,799,680 registers in 112,480 slices, 967 + 463 memories, 1,968 DSP slices: 115,878 sites in 8 regions.
    const auto warnings = [](const char* inputs) {
        return warningsOf(std::string(R"({"block": "Clock", "name": "c", "inputs": {)") + inputs + "}}");
    };
    EXPECT_THAT(warnings(R"("FFS_USING_CLK": 1799681)"),
                Contains("group \"c\": FFS_USING_CLK 1799681 is more than the 1799680 FF of ZQ4410"));
    EXPECT_THAT(warnings(R"("BRAMS_USING_CLK": 968, "DSPS_USING_CLK": 1969)"),
                testing::IsSupersetOf({HasSubstr("BRAMS_USING_CLK 968 is more than the 967 BRAM"),
                                       HasSubstr("DSPS_USING_CLK 1969 is more than the 1968 DSP")}));
    EXPECT_THAT(warnings(R"("FANOUT": 115879)"),
                Contains(HasSubstr("FANOUT makes 115879 sites, and ZQ4410 has 115878")));
    EXPECT_THAT(warnings(R"("FANOUT": 231756, "FANOUT_PER_SITE": 2, "NUM_FSR": 8)"),
                Each(testing::AllOf(Not(HasSubstr("sites, and")), Not(HasSubstr("NUM_FSR")))));
    EXPECT_THAT(warnings(R"("NUM_FSR": 9)"),
                Contains("group \"c\": NUM_FSR 9 is more than the 8 fabric regions of ZQ4410"));
}

TEST(PhysicsAcross, ClockLoadsBeyondWhatTheDesignNames)
{
    const auto warnings = [](const std::string& first, const std::string& second) {
        return warningsOf(
            R"({"block": "CleLogic", "name": "r", "inputs": {"INSTANCE_COUNT": 3000, "INSTANCE_TYPE": "REG_FF"}},
                             {"block": "Bram", "name": "b", "inputs": {"NUM_BRAMS": 10, "CASCADE_GROUP_SIZE": 1}},
                             {"block": "Clock", "name": "c", "inputs": {"FANOUT": 250, )" +
            first + R"(}}, {"block": "Clock", "name": "d", "inputs": {"FANOUT": 125, )" + second + "}}");
    };
    EXPECT_THAT(warnings(R"("FFS_USING_CLK": 2000)", R"("FFS_USING_CLK": 1001)"),
                Contains("the clocks' FFS_USING_CLK add up to 3001, and the design's groups name 3000"));
    EXPECT_THAT(warnings(R"("FFS_USING_CLK": 2000)", R"("FFS_USING_CLK": 1000, "DSPS_USING_CLK": 5)"),
                Each(Not(HasSubstr("add up"))));
    EXPECT_THAT(warnings(R"("BRAMS_USING_CLK": 10)", R"("BRAMS_USING_CLK": 10)"), Each(Not(HasSubstr("add up"))));
    EXPECT_THAT(
        warnings(R"("BRAMS_USING_CLK": 10)", R"("BRAMS_USING_CLK": 11)"),
        Contains(
            "the clocks' BRAMS_USING_CLK add up to 21, and the design's groups name 10, each on two clocks at most"));
}

TEST(PhysicsAcross, SitesBeyondTheLoads)
{
    const auto warnings = [](const char* inputs) {
        return warningsOf(std::string(R"({"block": "Clock", "name": "c", "inputs": {)") + inputs + "}}");
    };
    // 400 registers and one of each other kind, which unset loads are.
    EXPECT_THAT(warnings(R"("FANOUT": 406, "FFS_USING_CLK": 400)"),
                Contains(HasSubstr("FANOUT makes 406 sites for 405 loads")));
    EXPECT_THAT(warnings(R"("FANOUT": 405, "FFS_USING_CLK": 400)"), Each(Not(HasSubstr("FANOUT"))));
    EXPECT_THAT(
        warnings(R"("FANOUT": 12000, "FFS_USING_CLK": 12000)"),
        Contains("group \"c\": FANOUT 12000 counts sites, not the 12000 registers of FFS_USING_CLK: some eight share "
                 "a slice, which makes 1500 sites"));
    EXPECT_THAT(warnings(R"("FANOUT": 1000, "FFS_USING_CLK": 1000)"), Each(Not(HasSubstr("FANOUT"))));
}

TEST(PhysicsAcross, SlicesBeyondTheDeviceAndTheRegisters)
{
    const auto slices = [](const char* count) {
        return R"({"block": "CleClk", "name": "s", "inputs": {"NUM_CLOCKED_SLICES": )" + std::string(count) + "}}";
    };
    // ZQ4410 has 1,799,680 / 16 = 112,480 slices.
    EXPECT_THAT(warningsOf(slices("112481")),
                Contains("group \"s\": NUM_CLOCKED_SLICES 112481 is more than the 112480 slices of ZQ4410"));
    EXPECT_THAT(warningsOf(slices("112480")), Each(Not(HasSubstr("slices"))));
    const std::string named =
        R"(, {"block": "CleLogic", "name": "r", "inputs": {"INSTANCE_COUNT": 900, "INSTANCE_TYPE": "REG_FF"}},
             {"block": "CleLogic", "name": "m", "inputs": {"INSTANCE_COUNT": 100, "INSTANCE_TYPE": "LUT_DRAM"}})";
    EXPECT_THAT(
        warningsOf(slices("1001") + named),
        Contains("the clocks reach 1001 slices (NUM_CLOCKED_SLICES), and the design's groups name 1000 registers, "
                 "shift registers and LUT memories"));
    EXPECT_THAT(warningsOf(slices("1000") + named), Each(Not(HasSubstr("slices"))));
}

TEST(PhysicsAcross, PllsCountedTwice)
{
    const auto warnings = [](const char* processors) {
        return warningsOf(std::string(R"({"block": "Pspll", "name": "p", "count": 2}, {"block": "Yond", "name": "y")") +
                          processors + "}");
    };
    EXPECT_THAT(warnings(""),
                Contains("group \"y\": 2 of its PLLs are on (FPD_PLL_ON_OFF, LPD_PLL_ON_OFF) beside 2 in \"p\": the "
                         "processing system's PLLs are counted twice"));
    EXPECT_THAT(warnings(R"(, "inputs": {"FPD_PLL_ON_OFF": 0})"), Contains(HasSubstr("\"y\": 1 of its PLLs")));
    EXPECT_THAT(warnings(R"(, "inputs": {"FPD_PLL_ON_OFF": 0, "LPD_PLL_ON_OFF": 0})"), Each(Not(HasSubstr("twice"))));
    EXPECT_THAT(warningsOf(R"({"block": "Yond", "name": "y"})"), Each(Not(HasSubstr("twice"))));
}

TEST(PhysicsAcross, SettingsOfAnotherDevice)
{
    EXPECT_THAT(warningsOf(R"({"block": "Noc", "name": "n", "inputs": {"DEVICE": "ZR1810"}})"),
                Contains("group \"n\": DEVICE is ZR1810, and the design's device is ZQ4410; leave DEVICE out"));
    EXPECT_THAT(warningsOf(R"({"block": "Noc", "name": "n", "inputs": {"DEVICE": "ZQ4410"}})"),
                Each(Not(HasSubstr("leave DEVICE out"))));
    EXPECT_THAT(
        warningsOf(R"({"block": "Sarn", "name": "s", "inputs": {"SPEEDGRADE": -3}})", "zc7540_kjbo4900_1_MP_i_S"),
        Contains("group \"s\": SPEEDGRADE is -3, and the device's is -1; leave SPEEDGRADE out"));
}

TEST(PhysicsAcross, MoreThanThereIs)
{
    // ZQ4410 has 14 + 16 + 24 clock managers, one system monitor, 648 + 44 pins: 648 / 6 nibbles, 692 x 3 registers.
    const auto expectAt = [](const std::string& block, int most, const char* words) {
        const auto group = [&](int count) {
            return "{\"block\": \"" + block + "\", \"count\": " + std::to_string(count) +
                   (block == "Kelp" ? R"(, "inputs": {"NUM_RX_IOS": 2}})" : "}");
        };
        EXPECT_THAT(warningsOf(group(most + 1)), Contains(HasSubstr(words))) << block;
        EXPECT_THAT(warningsOf(group(most)), Each(Not(HasSubstr(words)))) << block;
    };
    expectAt("Veko", 14, "uses 15 VEKO of the 14");
    expectAt("Dpll", 16, "uses 17 DPLL of the 16");
    expectAt("Rusk", 24, "uses 25 RUSK of the 24");
    expectAt("Sysmon", 1, "the design has 2 system monitors, and ZQ4410 has one");
    expectAt("Kelp", 108, "the design has 109 nibbles of I/O PHY, and the 648 SELV_IO of ZQ4410 are 108");
    expectAt("Iologic", 2076, "the design has 2077 I/O registers, and the 692 pins of ZQ4410 have 2076");
    EXPECT_THAT(warningsOf(R"({"block": "Yond", "name": "y", "inputs": {"CPU_CORES": 3, "OCM_MEMORY_CORES": 5}})"),
                testing::IsSupersetOf(
                    {HasSubstr("group \"y\": CPU_CORES 3 is more than the 2 of a processing system"),
                     HasSubstr("group \"y\": OCM_MEMORY_CORES 5 is more than the 4 of a processing system")}));
}

TEST(PhysicsOfGroups, WidthsAndControllersThatCantBe)
{
    const auto bram = [](const char* inputs) {
        return warningsOf(std::string(R"({"block": "Bram", "name": "b", "inputs": {)") + inputs + "}}");
    };
    EXPECT_THAT(bram(R"("MODE": "BLKM18", "PORT_A_BIT_WIDTH": 36)"),
                Contains("group \"b\": PORT_A_BIT_WIDTH 36 in mode BLKM18, whose ports have at most 18 bits"));
    EXPECT_THAT(bram(R"("MODE": "BLKM36", "PORT_B_BIT_WIDTH": 72)"), Contains(HasSubstr("at most 36 bits")));
    EXPECT_THAT(bram(R"("MODE": "BLKM36", "PORT_B_BIT_WIDTH": 36)"), Each(Not(HasSubstr("bits"))));
    const auto wist = [](const char* channels) {
        return warningsOf(std::string(R"({"block": "Wist", "name": "w", "inputs": {"WIST_MODE_A1": "WIST_PS",
                                         "PCI_CHANNELS": )") +
                          channels + "}}");
    };
    EXPECT_THAT(wist("1"),
                Contains("group \"w\": WIST_MODE_A1 WIST_PS counts for nothing: PCI_CHANNELS 1 leaves A1 unused"));
    EXPECT_THAT(wist("2"), Each(Not(HasSubstr("counts for nothing"))));
}

TEST(PhysicsOfGroups, NibblesHaveSixIosAtMost)
{
    const auto estimateNibble = [](int rx, int tx, int both) {
        return estimateOf("{\"groups\": [\n{\"block\": \"Kelp\", \"name\": \"k\",\n\"inputs\": {\"NUM_RX_IOS\": " +
                          std::to_string(rx) + ", \"NUM_TX_IOS\": " + std::to_string(tx) +
                          ", \"NUM_RXTX_IOS\": " + std::to_string(both) + "}}]}");
    };
    EXPECT_GT(estimateNibble(1, 2, 3).dynamicWatts, 0.0);
    try {
        estimateNibble(1, 2, 4);
        FAIL() << "seven I/Os pass";
    } catch (const Error& error) {
        EXPECT_STREQ(error.what(),
                     "test.json:3: groups[0].inputs: group \"k\": NUM_RX_IOS 1 + NUM_TX_IOS 2 + NUM_RXTX_IOS 4 "
                     "are 7 I/Os, and a nibble has at most 6; \"count\" is the number of nibbles");
    }
}

TEST(PhysicsOfGroups, PadsDrawTheirCurrentAtTheVoltageOfTheirPower)
{
    const auto pads = [](const char* fields, const char* inputs) {
        return estimateOf(std::string("{") + fields + R"("groups": [{"block": "Yond", "name": "y", "inputs": {)" +
                          inputs + "}}]}");
    };
    const auto expectVolts = [](const Estimate& result, std::string_view cell, double volts) {
        for (const Contribution& part : groupOf(result, "y").contributions) {
            if (part.cell != cell)
                continue;
            EXPECT_GT(part.watts, 0.0) << cell;
            EXPECT_NEAR(part.amperes, part.watts / volts, 1e-6 * part.amperes)
                << cell << " " << part.watts << " W at " << volts << " V";
        }
    };
    const Estimate nominal = pads(R"("device": {"part": "zq4410"}, )", R"("LPD_MIO_GEM1_VOLTAGE": 2.5)");
    EXPECT_EQ(shownInput(groupOf(nominal, "y"), "LPD_MIO_GEM0_VOLTAGE"), "1.8 from device");
    expectVolts(nominal, "LPD_GEM0_DYNAMIC_MIO_POWER", 3.3);
    expectVolts(nominal, "LPD_GEM1_DYNAMIC_MIO_POWER", 2.5);
    expectVolts(nominal, "LPD_LOW_PER_IO_DYNAMIC_MIO_POWER", 3.3);
    EXPECT_THAT(nominal.warnings,
                Contains("group \"y\": pads are estimated at 3.3 V, since the formulas know 2.5 and 3.3 V: "
                         "LPD_MIO_GEM0_VOLTAGE 1.8 V, LPD_MIO_LOW_PER_IO_VOLTAGE 1.8 V"));
    EXPECT_THAT(nominal.warnings, Each(Not(HasSubstr("GEM1_VOLTAGE"))));
    EXPECT_THAT(pads(R"("device": {"part": "zq4410"}, )", R"("LPD_GEM0_MODE": "DISABLED")").warnings,
                Each(Not(HasSubstr("GEM0_VOLTAGE"))));
    const Estimate bare = pads("", "");
    expectVolts(bare, "LPD_GEM0_DYNAMIC_MIO_POWER", 3.3); // the cell's default
    EXPECT_THAT(bare.warnings, Each(Not(HasSubstr("VOLTAGE"))));
    const Estimate given = pads(R"("rails": {"VCCOHARLIO2": 2.5}, )", "");
    expectVolts(given, "LPD_LOW_PER_IO_DYNAMIC_MIO_POWER", 2.5);
    EXPECT_THAT(given.warnings, Each(Not(HasSubstr("VOLTAGE"))));
}

TEST(PhysicsOfGroups, TooFewLowSpeedPads)
{
    // The Ethernet controllers' core power is taken off that of NUM_LPD_IOU pads: without any, it is all that is left.
    const char* none = R"({"block": "Yond", "name": "y", "inputs": {"NUM_LPD_IOU": 0}})";
    EXPECT_THAT(warningsOf(none), Contains(HasSubstr("group \"y\": the low-speed pads' core power is negative (-")));
    EXPECT_THAT(warningsOf(none), Contains(HasSubstr("mW): NUM_LPD_IOU 0 is fewer than the pads of the Ethernet")));
    EXPECT_THAT(warningsOf(R"({"block": "Yond", "name": "y", "inputs": {"NUM_LPD_IOU": 40}})"),
                Each(Not(HasSubstr("negative"))));
}

TEST(PhysicsOfGroups, DmaWithoutAClock)
{
    const auto warnings = [](const char* width) {
        return warningsOf(
            std::string(R"({"block": "Wist5", "name": "w", "inputs": {"A0_MODES": "WIST5_DMA", "A0_LINK_SPEED": "GEN5",
                                         "A1_MODES": "NONE", "A0_LINK_WIDTH": ")") +
                width + "\"}}",
            "zc7540");
    };
    EXPECT_THAT(warnings("x8"),
                Contains("group \"w\": no clock for the DMA engine of A0 (DMA0_FREQUENCY is 0 at GEN5 x8): at GEN5 "
                         "the formulas want the width X8"));
    EXPECT_THAT(warnings("X8"), Each(Not(HasSubstr("DMA"))));
}

TEST(PhysicsOfGroups, WritesThatNeverHappen)
{
    const auto bram = [](const char* inputs) {
        return warningsOf(std::string(R"({"block": "Bram", "name": "b", "inputs": {"CASCADE_GROUP_SIZE": 1,
                                         "PORT_A_BIT_WIDTH": 72, "PORT_B_BIT_WIDTH": 72, )") +
                          inputs + "}}");
    };
    EXPECT_THAT(bram(R"("MODE": "BLKM36SDP", "PORT_A_WRITE_ENABLE": 0.25, "PORT_B_WRITE_ENABLE": 0)"),
                Contains("group \"b\": port A only reads in mode BLKM36SDP: PORT_A_WRITE_ENABLE 0.25 is for "
                         "PORT_B_WRITE_ENABLE, which is 0"));
    EXPECT_THAT(bram(R"("MODE": "BLKM36SDP", "PORT_B_WRITE_ENABLE": 0)"), Each(Not(HasSubstr("only reads"))));
    EXPECT_THAT(bram(R"("MODE": "BLKM36", "PORT_A_WRITE_ENABLE": 0.25, "PORT_B_WRITE_ENABLE": 0)"),
                Each(Not(HasSubstr("only reads"))));
    EXPECT_THAT(bram(R"("PORT_A_ENABLE_RATE": 0.1, "PORT_A_WRITE_ENABLE": 0.2)"),
                Contains(HasSubstr("PORT_A_WRITE_ENABLE 0.2 is above PORT_A_ENABLE_RATE 0.1")));
    EXPECT_THAT(bram(R"("PORT_B_ENABLE_RATE": 0.2, "PORT_B_WRITE_ENABLE": 0.2)"), Each(Not(HasSubstr("is above"))));
    EXPECT_THAT(
        warningsOf(R"({"block": "Plam", "name": "p", "inputs": {"ENABLE_RATE_B": 0.1, "WRITE_ENABLE_B": 0.3}})"),
        Contains(HasSubstr("WRITE_ENABLE_B 0.3 is above ENABLE_RATE_B 0.1")));
}

} // namespace

} // namespace zelm::test::physicsAcrossTest

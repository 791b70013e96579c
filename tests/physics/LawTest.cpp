// Laws of switching power: straight in the frequency, a power of the supply, a fixed charge per element.

#include "AnyBlock.h"

#include <gmock/gmock.h>

#include <cmath>

namespace zelm::test::lawTest {

namespace {

struct Line {
    const char* block;
    std::vector<const char*> rates; ///< inputs that grow together
    std::vector<const char*> outputs;
    bool throughZero; ///< false if a direct current or a fixed part stands beside
    Settings inputs;
};

void PrintTo(const Line& line, std::ostream* out)
{
    *out << line.block << ' ' << line.rates.front();
}

class InFrequency : public testing::TestWithParam<Line> {
protected:
    double at(double megahertz) const
    {
        Settings inputs = GetParam().inputs;
        for (const char* rate : GetParam().rates)
            inputs.push_back({rate, megahertz});
        return calculated(GetParam().block, inputs, GetParam().outputs);
    }
};

TEST_P(InFrequency, IsAStraightLine)
{
    const double once = at(100.0);
    const double twice = at(200.0);
    const double thrice = at(300.0);
    ASSERT_GT(once, 0.0);
    EXPECT_NEAR(thrice - twice, twice - once, 1e-5 * thrice) << once << " W, " << twice << " W, " << thrice << " W";
    if (GetParam().throughZero) {
        EXPECT_NEAR(twice, 2.0 * once, 1e-5 * twice);
    } else {
        EXPECT_GT(twice, once);
        EXPECT_LT(twice, 2.0 * once);
    }
}

// clang-format off
const std::vector<Line> kLines{
    {"Signal", {"CLOCK_FREQ"}, {"SIGNAL_POWER"}, true, {}},
    {"CleLogic", {"CLOCK_FREQ"}, {"LOGIC_POWER"}, true, {}},
    {"CleLogic", {"CLOCK_FREQ"}, {"LOGIC_POWER"}, true, {{"INSTANCE_TYPE", "REG_FF"}}},
    {"CleLogic", {"CLOCK_FREQ"}, {"LOGIC_POWER"}, true, {{"INSTANCE_TYPE", "LUT_DRAM"}}},
    {"CleLogic", {"CLOCK_FREQ"}, {"LOGIC_POWER"}, true, {{"INSTANCE_TYPE", "LUT_SRL"}}},
    {"CleClk", {"CLOCK_FREQ"}, {"CLE_CLOCK_POWER"}, true, {{"PROB_DUAL_EDGE_CLOCKING", 0.5}}},
    {"ClkDist", {"CLOCK_FREQ"}, {"CLK_NETWORK_VCCINT_PWR", "CLK_NETWORK_VCCRAM_PWR", "CLK_BUF_VCCRAM_PWR"}, true, {{"HD_COUNT", 4.0}, {"LEAF_1_COUNT", 90.0}, {"GATING_PROB", 0.3}}},
    {"IriClk", {"CLOCK_FREQ"}, {"CLOCK_POWER"}, false, {}},
    {"IriImux", {"OP_SIGNAL_RATE"}, {"IMUX_POWER"}, false, {}},
    {"Bram", {"PORT_A_CLOCK", "PORT_B_CLOCK"}, {"VCCINT_POWER", "VCCRAM_POWER"}, true, {}},
    {"Plam", {"CLOCK_FREQ"}, {"VCCINT_PWR_N_PLAMS", "VCCRAM_PWR_N_PLAMS"}, true, {}},
    {"Iologic", {"FREQUENCY"}, {"VCC_IO_PWR"}, true, {}},
    {"Kelp", {"CLOCK_FREQ"}, {"RP_TOTAL_POWER"}, true, {{"NUM_RX_IOS", 2.0}, {"NUM_TX_IOS", 3.0}}},
    {"Selv", {"CLOCK_FREQ"}, {"VCCO_POWER"}, false, {{"OUTPUT_IO_STANDARD", "LVCMOS15_8"}, {"OUTPUT_ENABLE", 1.0}}},
    {"Nalt", {"CLOCK_FREQ"}, {"VCCO_POWER"}, false, {{"OUTPUT_IO_STANDARD", "LVCMOS33_8"}}},
    {"Noc", {"NOC_CLK"}, {"NOC_CLK_PWR"}, true, {{"NUM_CLOCK_BUFFERS", 20.0}, {"NUM_PL_PATHS", 1.0}}},
    {"Noc", {"BANDWITH_READ", "BANDWITH_WRITE"}, {"TOTAL_PATH_PWR"}, false, {}},
    {"Ddrmc", {"READ_BAND_WIDTH", "WRITE_BAND_WIDTH"}, {"VCCSOC_POWER"}, false, {{"DATA_RATE", 3200.0}}},
    {"Gorb", {"MEM_FREQ"}, {"OCM_CONTROLLER_DYNAMIC_POWER"}, true, {}},
    {"Nemt", {"CLK_FREQ"}, {"NEMT_VCCINT_POWER"}, false, {{"NEMT_CORES", 8.0}, {"CORE_LOAD", 0.5}}},
    {"Yond", {"CPU_CLK_FREQ"}, {"CPU_DYNAMIC_POWER"}, true, {}},
    {"Yond", {"DUAL_R5_CLK_FREQ"}, {"DUAL_R5_POWER"}, true, {}},
    {"Harl", {"IOU_CLOCK_FREQ"}, {"HARL_IOU_VCCINTHARL_POWER"}, true, {}},
    {"Sdfec", {"DATARATE"}, {"POWER"}, true, {}},
};
// clang-format on

INSTANTIATE_TEST_SUITE_P(All, InFrequency, testing::ValuesIn(kLines));

struct PowerLaw {
    const char* block;
    std::vector<const char*> supplies; ///< move together
    std::vector<const char*> outputs;
    double exponent;
    Settings inputs;
};

void PrintTo(const PowerLaw& law, std::ostream* out)
{
    *out << law.block << ' ' << law.supplies.front();
}

class InVolts : public testing::TestWithParam<PowerLaw> {
protected:
    double at(double volts) const
    {
        Settings inputs = GetParam().inputs;
        for (const char* supply : GetParam().supplies)
            inputs.push_back({supply, volts});
        return calculated(GetParam().block, inputs, GetParam().outputs);
    }
};

TEST_P(InVolts, IsAPowerLaw)
{
    const double low = at(0.8);
    const double high = at(0.88);
    ASSERT_GT(low, 0.0);
    EXPECT_NEAR(high / low, std::pow(1.1, GetParam().exponent), 1e-4) << low << " W, " << high << " W";
}

// C V^2 where a capacitance or a current at fixed volts stands in the data. 2.3 where crowbar current grows beside.
// clang-format off
const std::vector<PowerLaw> kPowerLaws{
    {"Signal", {"VCCINT"}, {"SIGNAL_POWER"}, 2.0, {}},
    {"CleLogic", {"VCCINT"}, {"LOGIC_POWER"}, 2.0, {}},
    {"CleClk", {"VCCINT"}, {"CLE_CLOCK_POWER"}, 2.0, {}},
    {"ClkDist", {"VCCINT", "VCCRAM"}, {"CLK_NETWORK_VCCINT_PWR", "CLK_NETWORK_VCCRAM_PWR"}, 2.0, {{"HD_COUNT", 4.0}, {"LEAF_1_COUNT", 90.0}}},
    {"IriClk", {"VCCINT"}, {"CLOCK_POWER"}, 2.0, {{"NON_CLE_SITE_FANOUT", 9.0}}},
    {"IriImux", {"VCCINT"}, {"IMUX_POWER"}, 2.0, {}},
    {"Kelp", {"VCC_IO"}, {"RP_TOTAL_POWER"}, 2.0, {{"NUM_RX_IOS", 6.0}}},
    {"Selv", {"VCC_IO"}, {"VCCIO_POWER"}, 2.0, {{"OUTPUT_ENABLE", 1.0}}},
    {"Veko", {"VCCRAM"}, {"VCCRAM_PWR"}, 2.0, {}},
    {"Rusk", {"VCCINTIO"}, {"VCCINTIO_PWR"}, 2.0, {}},
    {"Lorv", {"VCCINT"}, {"VCCINT_POWER"}, 2.0, {}},
    {"Lorvp", {"VCCINT"}, {"VCCINT_POWER"}, 2.0, {}},
    {"Sarn", {"VCCINT"}, {"VCCINT_POWER"}, 2.0, {}},
    {"Noc", {"VCC_SOC"}, {"VCC_SOC_PWR"}, 2.0, {}},
    {"Ddrmc", {"VCC_SOC"}, {"VCCSOC_POWER"}, 2.0, {}},
    {"Jorl", {"VCCINT"}, {"VCCINT_POWER"}, 2.0, {}},
    {"Ilkn", {"VCCINT"}, {"VCCINT_POWER"}, 2.0, {}},
    {"Hsc", {"VCCINT"}, {"VCCINT_POWER"}, 2.0, {}},
    {"Tuvo", {"VCCINT"}, {"POWER"}, 2.0, {}},
    {"Bram", {"VCCINT", "VCCRAM"}, {"VCCINT_POWER", "VCCRAM_POWER"}, 2.3, {}},
    {"Plam", {"VCCINT", "VCCRAM"}, {"VCCINT_PWR_N_PLAMS", "VCCRAM_PWR_N_PLAMS"}, 2.3, {}},
    {"DspInt24", {"VCCINT"}, {"DYNAMIC_VCCINT_POWER"}, 2.3, {}},
    {"DspInt8", {"VCCINT"}, {"DYNAMIC_VCCINT_POWER"}, 2.3, {}},
    {"DspLegacy", {"VCCINT"}, {"DYNAMIC_VCCINT_POWER"}, 2.3, {{"NUM_DSP", 1.0}, {"CLOCK_FREQ", 500.0}, {"A_TR", 0.3}}},
    {"DspCplx", {"VCCINT"}, {"DYNAMIC_VCCINT_POWER"}, 2.3, {}},
    {"DspFp32", {"VCCINT"}, {"DYNAMIC_VCCINT_POWER"}, 2.3, {}},
    {"Dpll", {"VCCINT"}, {"VCCINT_PWR"}, 2.3, {}},
    {"Nemt", {"VCCINT"}, {"NEMT_VCCINT_POWER"}, 2.3, {{"NEMT_CORES", 8.0}}},
    {"Sdfec", {"VCCINT"}, {"POWER"}, 2.3, {}},
    {"Pcieb", {"VCCINT"}, {"POWER"}, 2.3, {}},
    {"Pcieb5", {"VCCINT"}, {"POWER"}, 2.3, {}},
    {"Mulm", {"VCCINT"}, {"VCCINT_POWER"}, 2.3, {}},
    {"Yond", {"VCCPSFP"}, {"APU_CPU_POWER"}, 2.3, {}},
    {"Harl", {"VCCINTHARL"}, {"HARL_IOU_VCCINTHARL_POWER"}, 2.3, {}},
    {"Gorb", {"PSUPPLY_VOLTAGE"}, {"PL_INTERFACE_1_DYNAMIC_POWER"}, 2.33, {}},
};
// clang-format on

INSTANTIATE_TEST_SUITE_P(All, InVolts, testing::ValuesIn(kPowerLaws));

// What the accounting of a net hands to the slices' clocking, eight registers to a slice.
double clockingOf(double registers)
{
    AnyBlock net = kind("Clock").create();
    net.set({{"FANOUT", registers / 8.0},
             {"FFS_USING_CLK", registers},
             {"AVAIL_FFS", 5132000.0},
             {"BRAMS_USING_CLK", 0.0},
             {"PLAMS_USING_CLK", 0.0},
             {"DSPS_USING_CLK", 0.0},
             {"LUTRAMS_USING_CLK", 0.0},
             {"SRLS_USING_CLK", 0.0}});
    net.calculate();
    Settings inputs{{"CLOCK_FREQ", 400.0}, {"VCCINT", 0.8}};
    for (const char* cell : {"NUM_CLOCKED_SLICES", "NUM_FF_SLICES", "NUM_IMUX_SLICES", "NUM_LUTRAM_SLICES",
                             "NUM_SRL_SLICES", "AVG_CE_FF_GROUPS_PER_SLICE"})
        inputs.push_back({cell, net.number(cell)});
    return calculated("CleClk", inputs, {"CLE_CLOCK_POWER"});
}

TEST(SliceClocking, GrowsWithTheRegistersAndNotWithTheirSquare)
{
    // 34 + 17 fF per slice of eight registers at each cycle: 51 fF x 0.64 V^2 x 400 MHz / 8 = 1.63 uW per register.
    for (const double registers : {1000.0, 10000.0, 100000.0, 1e6, 5e6}) {
        const double each = clockingOf(registers) / registers;
        EXPECT_GT(each, 1.6e-6) << registers << " registers";
        EXPECT_LT(each, 1.75e-6) << registers << " registers"; // the enables' part is at most 5 %
    }
    EXPECT_NEAR(clockingOf(360000.0) / (4.0 * clockingOf(90000.0)), 1.0, 0.01);
}

TEST(Routing, WeighsAboutAsMuchAsTheLogic)
{
    // A datapath: nine nets to ten LUTs, three registers to two LUTs.
    const Settings common{{"CLOCK_FREQ", 300.0}, {"VCCINT", 0.8}};
    const auto with = [&](Settings more) {
        more.insert(more.end(), common.begin(), common.end());
        return more;
    };
    const double wires =
        calculated("Signal", with({{"SIGNAL_COUNT", 9000.0}, {"ROUTING_COMPLEXITY", 9.0}}), {"SIGNAL_POWER"});
    const double logic =
        calculated("CleLogic", with({{"INSTANCE_COUNT", 10000.0}}), {"LOGIC_POWER"}) +
        calculated("CleLogic", with({{"INSTANCE_COUNT", 15000.0}, {"INSTANCE_TYPE", "REG_FF"}}), {"LOGIC_POWER"});
    EXPECT_GT(wires / logic, 0.6) << wires << " W and " << logic << " W";
    EXPECT_LT(wires / logic, 1.5) << wires << " W and " << logic << " W";
}

TEST(Pair, DrivesTwoPins)
{
    const Settings inputs{{"CLOCK_FREQ", 1600.0}, {"DATA_RATE", "Clock"}, {"OUTPUT_ENABLE", 1.0}, {"VCCO15", 1.2}};
    const auto driving = [&](const char* standard) {
        Settings all = inputs;
        all.push_back({"OUTPUT_IO_STANDARD", standard});
        return calculated("Selv", all, {"VCCO_POWER"});
    };
    EXPECT_NEAR(driving("DIFF_SSTL12"), 2.0 * driving("SSTL12"), 1e-6);
}

} // namespace

} // namespace zelm::test::lawTest

#include "fabric/ZelmOrvaneCleClkModel.h"
#include "fabric/ZelmOrvaneClkDistModel.h"
#include "fabric/ZelmOrvaneClockModel.h"

#include "support/BlockFixture.h"

#include <algorithm>
#include <cfloat>
#include <limits>

namespace zelm::test::clockTest {

using Model = ZelmOrvaneClockModel;
using Params = Model::Params;

constexpr std::string_view kTables = "VAR_DATA : { VAR1 = 0.25; VAR2 = 4.0; };"; // u = 1 - 2^(-8 x)

class ClockTest : public BlockFixture<Model> {
protected:
    ClockTest() : BlockFixture(kTables) {}

    // A net with nothing on it but what a test puts there.
    void noLoads()
    {
        for (const auto cell : {Params::BRAMS_USING_CLK, Params::PLAMS_USING_CLK, Params::DSPS_USING_CLK,
                                Params::FFS_USING_CLK, Params::LUTRAMS_USING_CLK, Params::SRLS_USING_CLK})
            params[cell] = 0;
    }
};

TEST_F(ClockTest, Defaults)
{
    calculate();
    EXPECT_THAT(params[Params::SITES], IsBits(1.0f));
    EXPECT_THAT(params[Params::TOTAL_SITES], IsBits(3.0625f)); // 1/16 + 1 + 1 + 1
    EXPECT_THAT(params[Params::SLICES], IsBits(0.0f));         // 1 site, 3 loads outside of the slices
    EXPECT_EQ(params[Params::NUM_FF_SLICES], 0);
    EXPECT_EQ(params[Params::NUM_CLOCKED_SLICES], 0);
    EXPECT_THAT(params[Params::AVG_CE_FF_GROUPS_PER_SLICE], IsBits(0.0f));
    EXPECT_THAT(params[Params::MAX_HDIST], IsBits(1.0f));
    // (1536/48 + 16/3072 + 16/12 + 16/12 + 16/24) / 16 = 2.20865...
    EXPECT_NEAR(params[Params::MAX_LEAFS], 2.2086589, 1e-6);
    // 1 - 2^(-8 / 3.0625) = 0.83643
    EXPECT_NEAR(params[Params::HDIST_UTIL], 1.0 - std::exp2(-8.0 / 3.0625), 1e-6);
    EXPECT_EQ(params[Params::HD_COUNT], 0);     // 0.836
    EXPECT_EQ(params[Params::LEAF_1_COUNT], 1); // 2.2087 x 0.8364 = 1.847
}

TEST_F(ClockTest, PlaceholdersComeBackWhateverTheHostWrote)
{
    const std::map<std::string, int> ints{
        {"CLKOUT0_DIVIDE", 3}, {"CLKOUT1_DIVIDE", 3}, {"CLKOUT2_DIVIDE", 3}, {"CLKOUT3_DIVIDE", 3},
        {"CLKOUT4_DIVIDE", 3}, {"CLKOUT5_DIVIDE", 3}, {"CLKOUT6_DIVIDE", 3}, {"D_COUNTER", 1},
        {"HD_HSR_COUNT", 0},   {"HR_COUNT", 0},       {"KELP_DIVIDE", 1},    {"LEAF_2_COUNT", 0},
        {"LEAF_4_COUNT", 0},   {"LEAF_8_COUNT", 0},   {"M_COUNTER", 10},     {"NUM_IMUX_SLICES", 1},
        {"VD_COUNT", 0},       {"VD_L1_COUNT", 0},    {"VD_L2_COUNT", 0},    {"VD_SSIT_COUNT", 0},
        {"VR_COUNT", 0},       {"VR_SSIT_COUNT", 0},
    };
    const std::map<std::string, float> floats{
        {"AVG_CE_IMUX_GROUPS_PER_SLICE", 3.0f}, {"GATING_PROB", 0.0f},      {"PROB_CTRL_IMUX_USED", 0.1f},
        {"PROB_DUAL_EDGE_CLOCKING", 0.0f},      {"PROB_PDELAY_USED", 0.0f}, {"PROB_SLICE_CE", 0.5f},
    };
    for (const auto& [name, value] : ints)
        params[Params::string_to_int_enum(name)] = 77;
    for (const auto& [name, value] : floats)
        params[Params::string_to_float_enum(name)] = 77.0f;
    params[Params::BUF_TYPE] = "GLOBAL";
    params[Params::SPREAD_SPECTRUM] = "OFF";
    for (int run = 0; run < 2; ++run) {
        calculate();
        for (const auto& [name, value] : ints)
            EXPECT_EQ(params[Params::string_to_int_enum(name)], value) << name;
        for (const auto& [name, value] : floats)
            EXPECT_THAT(params[Params::string_to_float_enum(name)], IsBits(value)) << name;
        EXPECT_EQ(params[Params::BUF_TYPE], "NO_BUFFER");
        EXPECT_EQ(params[Params::SPREAD_SPECTRUM], "ON");
    }
    // With the computed ones, these are all of the outputs.
    EXPECT_EQ(ints.size() + 7, 29u);
    EXPECT_EQ(floats.size() + 1, 7u);
}

TEST_F(ClockTest, NoLoadsPerSiteMeansNoSites)
{
    params[Params::FANOUT_PER_SITE] = 0.0f;
    calculate();
    EXPECT_THAT(params[Params::SITES], IsBits(0.0f));
    EXPECT_THAT(params[Params::SITE_UTIL], IsBits(0.0f));
    EXPECT_THAT(params[Params::HDIST_UTIL], IsBits(0.0f));
    EXPECT_EQ(params[Params::LEAF_1_COUNT], 0);
}

TEST_F(ClockTest, TheGreaterCountOfEachKindHolds)
{
    params[Params::NUM_FFS] = 3200;
    params[Params::AVAIL_FFS] = 320;
    params[Params::NUM_BRAMS] = 5;
    params[Params::AVAIL_BRAMS] = 50;
    params[Params::NUM_PLAMS] = 60;
    params[Params::AVAIL_PLAMS] = 6;
    params[Params::NUM_DSPS] = 7;
    params[Params::AVAIL_DSPS] = 70;
    params[Params::NUM_FSR] = 2;
    calculate();
    EXPECT_THAT(params[Params::TOTAL_SITES], IsBits(380.0f)); // 3200/16 + 50 + 60 + 70
    // (2 x 32 + 3200/192 + 50 x 4/3 + 60 x 4/3 + 70 x 2/3) / 16
    EXPECT_NEAR(params[Params::MAX_LEAFS], 17.125, 1e-5);
}

TEST_F(ClockTest, ADeviceWithoutSitesIsFull)
{
    for (const auto cell : {Params::NUM_FFS, Params::AVAIL_FFS, Params::NUM_BRAMS, Params::AVAIL_BRAMS,
                            Params::NUM_PLAMS, Params::AVAIL_PLAMS, Params::NUM_DSPS, Params::AVAIL_DSPS})
        params[cell] = 0;
    calculate();
    // Each kind's MAX of two zeros is the smallest positive float, so the total isn't 0 and nothing is divided by 0.
    EXPECT_THAT(params[Params::TOTAL_SITES], IsBits(3.0625f * FLT_MIN));
    EXPECT_THAT(params[Params::SITE_UTIL], IsBits(1.0f / (3.0625f * FLT_MIN)));
    EXPECT_THAT(params[Params::HDIST_UTIL], IsBits(1.0f));
    EXPECT_EQ(params[Params::HD_COUNT], 1);
}

TEST_F(ClockTest, UtilisationFollowsTheCurveAndCountsAreCutOff)
{
    params[Params::FANOUT] = 49;
    params[Params::FANOUT_PER_SITE] = 64.0f; // 0.765625 sites of 3.0625: a quarter
    params[Params::NUM_FSR] = 30;
    calculate();
    EXPECT_THAT(params[Params::SITE_UTIL], IsBits(0.25f));
    EXPECT_THAT(params[Params::HDIST_UTIL], IsBits(0.75f)); // 1 - 2^-2
    EXPECT_THAT(params[Params::LEAF_UTIL], IsBits(0.75f));
    EXPECT_EQ(params[Params::HD_COUNT], 22); // 22.5
    EXPECT_EQ(params[Params::HD_LOC_COUNT], 22);
    EXPECT_EQ(params[Params::LEAF_1_COUNT], 45); // (30 x 32 + 3.3385) / 16 x 0.75 = 45.157
}

TEST_F(ClockTest, AMissingParameterIsNoError)
{
    load("VAR_DATA : { VAR2 = 4.0; };");
    calculate();
    EXPECT_THAT(params[Params::HDIST_UTIL], IsBits(-INFINITY)); // 1 - FLT_MAX^1.3
    EXPECT_EQ(params[Params::HD_COUNT], std::numeric_limits<int>::min());
}

TEST_F(ClockTest, OnlyTheExactSentinelCountsAsAnError)
{
    load("VAR_DATA : { VAR1 = -3.4028234663852886e38; VAR2 = 1.0; };");
    params[Params::FANOUT] = 49;
    params[Params::FANOUT_PER_SITE] = 16.0f; // all 3.0625 sites
    calculate();
    EXPECT_THAT(params[Params::HDIST_UTIL], IsBits(1.0f)); // in place of 1 + FLT_MAX, which is FLT_MAX
    EXPECT_THAT(params[Params::LEAF_UTIL], IsBits(1.0f));
}

TEST_F(ClockTest, BlockRamsAreTakenOffAndOtherLoadsPutOn)
{
    params[Params::FANOUT] = 100;
    params[Params::BRAMS_USING_CLK] = 10;
    params[Params::PLAMS_USING_CLK] = 20;
    params[Params::DSPS_USING_CLK] = 30;
    calculate();
    EXPECT_THAT(params[Params::SLICES], IsBits(140.0f)); // 100 - 10 + 20 + 30
    EXPECT_EQ(params[Params::NUM_FF_SLICES], 140);
    EXPECT_EQ(params[Params::NUM_CLOCKED_SLICES], 140);
    params[Params::PLAMS_USING_CLK] = 25;
    calculate();
    EXPECT_THAT(params[Params::SLICES], IsBits(145.0f));
    params[Params::DSPS_USING_CLK] = 36;
    calculate();
    EXPECT_THAT(params[Params::SLICES], IsBits(151.0f));
    params[Params::BRAMS_USING_CLK] = 17;
    calculate();
    EXPECT_THAT(params[Params::SLICES], IsBits(144.0f));
}

TEST_F(ClockTest, SlicesBeginWhereSitesReachTheOtherLoads)
{
    params[Params::BRAMS_USING_CLK] = 10;
    params[Params::PLAMS_USING_CLK] = 20;
    params[Params::DSPS_USING_CLK] = 30;
    params[Params::FANOUT] = 59;
    calculate();
    EXPECT_THAT(params[Params::SLICES], IsBits(0.0f));
    params[Params::FANOUT] = 60;
    calculate();
    EXPECT_THAT(params[Params::SLICES], IsBits(100.0f)); // 60 - 10 + 20 + 30
}

TEST_F(ClockTest, SliceCountsAreCutOff)
{
    noLoads();
    params[Params::FANOUT] = 39;
    params[Params::FANOUT_PER_SITE] = 4.0f;
    params[Params::LUTRAMS_USING_CLK] = 10;
    calculate();
    EXPECT_THAT(params[Params::SLICES], IsBits(9.75f));
    EXPECT_EQ(params[Params::NUM_FF_SLICES], 9);
    EXPECT_EQ(params[Params::NUM_CLOCKED_SLICES], 9);
    EXPECT_EQ(params[Params::NUM_LUTRAM_SLICES], 9);
}

TEST_F(ClockTest, LutMemoriesHaveAllSlicesOrNone)
{
    noLoads();
    params[Params::FANOUT] = 44;
    params[Params::LUTRAMS_USING_CLK] = 10;
    calculate();
    EXPECT_EQ(params[Params::NUM_LUTRAM_SLICES], 44);
    EXPECT_EQ(params[Params::NUM_SRL_SLICES], 0);
    params[Params::FFS_USING_CLK] = 1;
    calculate();
    EXPECT_EQ(params[Params::NUM_LUTRAM_SLICES], 0); // 10 / 11 in ints
}

TEST_F(ClockTest, ShiftRegistersHaveAllSlicesOrNone)
{
    noLoads();
    params[Params::FANOUT] = 44;
    params[Params::SRLS_USING_CLK] = 10;
    calculate();
    EXPECT_EQ(params[Params::NUM_SRL_SLICES], 44);
    EXPECT_EQ(params[Params::NUM_LUTRAM_SLICES], 0);
    params[Params::LUTRAMS_USING_CLK] = 1;
    calculate();
    EXPECT_EQ(params[Params::NUM_SRL_SLICES], 0);
    EXPECT_EQ(params[Params::NUM_LUTRAM_SLICES], 0);
}

TEST_F(ClockTest, SharesAreGuardedAndSigned)
{
    noLoads();
    params[Params::FANOUT] = 44;
    params[Params::LUTRAMS_USING_CLK] = 10;
    params[Params::FFS_USING_CLK] = -10; // a sum of 0
    calculate();
    EXPECT_EQ(params[Params::NUM_LUTRAM_SLICES], 0);
    params[Params::FFS_USING_CLK] = -7; // 10 / 3
    calculate();
    EXPECT_EQ(params[Params::NUM_LUTRAM_SLICES], 132);
    params[Params::LUTRAMS_USING_CLK] = -10;
    params[Params::FFS_USING_CLK] = 5; // -10 / -5 is 2, but no such loads count
    calculate();
    EXPECT_EQ(params[Params::NUM_LUTRAM_SLICES], 0);
}

TEST_F(ClockTest, EnableGroupsAreThoseOfAllSlices)
{
    noLoads();
    params[Params::FANOUT] = 100;
    params[Params::FFS_USING_CLK] = 400;
    calculate();
    // A quarter of 100 slices x 16 registers; (1 - 0.25^(0.25 x 4)) x 4 = 3 groups per slice, x 100 slices
    EXPECT_THAT(params[Params::AVG_CE_FF_GROUPS_PER_SLICE], IsBits(300.0f));
}

TEST_F(ClockTest, OutputsCarryTheInputNamesOfSliceClockingAndDistribution)
{
    std::vector<std::string> ints, floats, strings;
    Params::getIntModelOutputNames(ints);
    Params::getFloatModelOutputNames(floats);
    Params::getStringModelOutputNames(strings);
    const auto expectCarried = [&](std::span<const ZelmCellInfo> cells, int count) {
        for (const ZelmCellInfo& cell : cells) {
            if (cell.kind != ZelmCellInfo::Kind::userInput || cell.name == "CLOCK_FREQ" || cell.name.starts_with("VCC"))
                continue;
            const auto& names = cell.type == ZelmCellInfo::Type::integer ? ints
                                : cell.type == ZelmCellInfo::Type::real  ? floats
                                                                         : strings;
            EXPECT_TRUE(std::count(names.begin(), names.end(), cell.name) == 1) << cell.name;
            --count;
        }
        EXPECT_EQ(count, 0);
    };
    expectCarried(ZelmOrvaneCleClkParams::cells(), 11);
    expectCarried(ZelmOrvaneClkDistParams::cells(), 16);
}

// What a host does for one clock: the accounting, then both powers on its outputs.
TEST(Clock, ShippedDataGiveANetOfTenThousandLoadsTensOfMilliwatts)
{
    Params net;
    net[Params::NUM_FSR] = 40;
    net[Params::AVAIL_FFS] = 900000;
    net[Params::AVAIL_BRAMS] = 1000;
    net[Params::AVAIL_PLAMS] = 460;
    net[Params::AVAIL_DSPS] = 2000;
    net[Params::FANOUT] = net[Params::FFS_USING_CLK] = 10000;
    net[Params::FANOUT_PER_SITE] = 12.0f;
    for (const auto cell : {Params::BRAMS_USING_CLK, Params::PLAMS_USING_CLK, Params::DSPS_USING_CLK,
                            Params::LUTRAMS_USING_CLK, Params::SRLS_USING_CLK})
        net[cell] = 0;
    net = calculateShipped<Model>(net);
    EXPECT_THAT(net[Params::HD_COUNT], testing::AllOf(testing::Gt(1), testing::Lt(20)));
    EXPECT_THAT(net[Params::LEAF_1_COUNT], testing::AllOf(testing::Gt(20), testing::Lt(300)));
    EXPECT_EQ(net[Params::NUM_FF_SLICES], 833);

    using SliceParams = ZelmOrvaneCleClkParams;
    SliceParams slices;
    slices[SliceParams::CLOCK_FREQ] = 300.0f;
    slices[SliceParams::NUM_CLOCKED_SLICES] = net[Params::NUM_CLOCKED_SLICES];
    slices[SliceParams::NUM_FF_SLICES] = net[Params::NUM_FF_SLICES];
    slices[SliceParams::NUM_LUTRAM_SLICES] = net[Params::NUM_LUTRAM_SLICES];
    slices[SliceParams::NUM_SRL_SLICES] = net[Params::NUM_SRL_SLICES];
    slices[SliceParams::AVG_CE_FF_GROUPS_PER_SLICE] = net[Params::AVG_CE_FF_GROUPS_PER_SLICE];
    slices = calculateShipped<ZelmOrvaneCleClkModel>(slices);

    using NetworkParams = ZelmOrvaneClkDistParams;
    NetworkParams network;
    network[NetworkParams::CLOCK_FREQ] = 300.0f;
    network[NetworkParams::HD_COUNT] = net[Params::HD_COUNT];
    network[NetworkParams::LEAF_1_COUNT] = net[Params::LEAF_1_COUNT];
    network = calculateShipped<ZelmOrvaneClkDistModel>(network);

    const float inSlices = slices[SliceParams::CLE_CLOCK_POWER];
    const float inNetwork = network[NetworkParams::CLK_NETWORK_VCCINT_PWR] +
                            network[NetworkParams::CLK_NETWORK_VCCRAM_PWR] + network[NetworkParams::CLK_BUF_VCCRAM_PWR];
    EXPECT_THAT(inSlices, testing::AllOf(testing::Gt(3.0f), testing::Lt(30.0f)));  // mW
    EXPECT_THAT(inNetwork, testing::AllOf(testing::Gt(5.0f), testing::Lt(40.0f))); // mW
    EXPECT_THAT(inSlices + inNetwork, testing::AllOf(testing::Gt(10.0f), testing::Lt(60.0f)));
}

} // namespace zelm::test::clockTest

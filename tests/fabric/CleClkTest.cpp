#include "fabric/ZelmOrvaneCleClkModel.h"

#include "support/BlockFixture.h"

namespace zelm::test::cleClkTest {

using Model = ZelmOrvaneCleClkModel;
using Params = Model::Params;

constexpr std::string_view kTables = R"(CLK_CAP : {
  CLK_MODE_SEL = 1.0; CLKIN_BUF = 2.0; PROG_DELAY = 4.0; CLEFF_CLK_CTRL = 3.0; CLEFF_CLK_DEL = 5.0;
  IMUX_DATA_CTRL = 7.0; IMUX_CTRL_CTRL = 20.0; IMUX_CLK_SR = 11.0; C_WCLKRAM = 13.0; C_SCLK = 17.0;
};)";

// At 10 MHz and 2 V.
class CleClkTest : public BlockFixture<Model> {
protected:
    CleClkTest() : BlockFixture(kTables)
    {
        params[Params::CLOCK_FREQ] = 10.0f;
        params[Params::VCCINT] = 2.0f;
    }
};

TEST(CleClk, LoadsTimesMetricsGiveTheCells)
{
    std::vector<std::string> expected, names, powers;
    for (const std::string load : {"FF_CLK", "IMUX_CLK", "LUTRAM_CLK", "MODULATION", "SRL_CLK"}) {
        expected.push_back(load + "_CAP_FREQ");
        powers.push_back(load + "_POWER");
    }
    Params::getFloatIntermediateCalculationNames(names);
    EXPECT_EQ(names, expected);
    Params::getFloatModelOutputNames(names);
    powers.insert(powers.begin(), "CLE_CLOCK_POWER");
    EXPECT_EQ(names, powers);
}

TEST_F(CleClkTest, EachLoadHasItsChargeRate)
{
    params[Params::PROB_PDELAY_USED] = 0.5f;
    params[Params::PROB_CTRL_IMUX_USED] = 0.25f;
    calculate();
    EXPECT_THAT(params[Params::MODULATION_CAP_FREQ], IsBits(50.0f)); // (4 x 0.5 + 2 + 1) x 10
    EXPECT_THAT(params[Params::FF_CLK_CAP_FREQ], IsBits(95.0f));     // (3 x 3 x 0.5 + 5) x 10
    EXPECT_THAT(params[Params::IMUX_CLK_CAP_FREQ], IsBits(265.0f));  // (7 x 3 x 0.5 + 0.25 x 20 + 11) x 10
    EXPECT_THAT(params[Params::LUTRAM_CLK_CAP_FREQ], IsBits(130.0f));
    EXPECT_THAT(params[Params::SRL_CLK_CAP_FREQ], IsBits(170.0f));
}

TEST_F(CleClkTest, DualEdgeClockingHalvesWhatIsBehindTheModeSelect)
{
    params[Params::PROB_PDELAY_USED] = 0.5f;
    params[Params::PROB_DUAL_EDGE_CLOCKING] = 1.0f;
    calculate();
    EXPECT_THAT(params[Params::MODULATION_CAP_FREQ], IsBits(30.0f)); // ((4 x 0.5 + 2) / 2 + 1) x 10
    params[Params::PROB_DUAL_EDGE_CLOCKING] = 0.5f;
    calculate();
    EXPECT_THAT(params[Params::MODULATION_CAP_FREQ], IsBits(40.0f)); // (4 x 0.75 + 1) x 10
}

TEST_F(CleClkTest, NoEnableLeavesTheUnconditionalLoads)
{
    params[Params::PROB_SLICE_CE] = 0.0f;
    params[Params::PROB_CTRL_IMUX_USED] = 0.25f;
    calculate();
    EXPECT_THAT(params[Params::FF_CLK_CAP_FREQ], IsBits(50.0f));    // 5 x 10
    EXPECT_THAT(params[Params::IMUX_CLK_CAP_FREQ], IsBits(160.0f)); // (0.25 x 20 + 11) x 10
}

TEST_F(CleClkTest, EachLoadHasItsSlices)
{
    params[Params::NUM_CLOCKED_SLICES] = 2;
    params[Params::NUM_FF_SLICES] = 3;
    params[Params::NUM_IMUX_SLICES] = 4;
    params[Params::NUM_LUTRAM_SLICES] = 5;
    params[Params::NUM_SRL_SLICES] = 6;
    params[Params::PROB_CTRL_IMUX_USED] = 0.25f;
    calculate();
    const auto power = [](double capFreq) { return static_cast<float>(2.0 * 2.0 * capFreq * 0.001); };
    EXPECT_THAT(params[Params::MODULATION_POWER], IsBits(power(2 * 30.0)));
    EXPECT_THAT(params[Params::FF_CLK_POWER], IsBits(power(3 * 95.0)));
    EXPECT_THAT(params[Params::IMUX_CLK_POWER], IsBits(power(4 * 265.0)));
    EXPECT_THAT(params[Params::LUTRAM_CLK_POWER], IsBits(power(5 * 130.0)));
    EXPECT_THAT(params[Params::SRL_CLK_POWER], IsBits(power(6 * 170.0)));
    // 60 + 285 + 1060 + 650 + 1020 = 3075 fF MHz x 4 V^2 = 12.3 uW; the total has one more 0.001
    EXPECT_NEAR(params[Params::CLE_CLOCK_POWER], 0.0123, 2e-9);
}

TEST_F(CleClkTest, NoSlicesMeanNoPower)
{
    const auto counts = {Params::NUM_CLOCKED_SLICES, Params::NUM_FF_SLICES, Params::NUM_IMUX_SLICES,
                         Params::NUM_LUTRAM_SLICES, Params::NUM_SRL_SLICES};
    for (const auto count : counts)
        params[count] = 0;
    calculate();
    for (const auto power : {Params::MODULATION_POWER, Params::FF_CLK_POWER, Params::IMUX_CLK_POWER,
                             Params::LUTRAM_CLK_POWER, Params::SRL_CLK_POWER, Params::CLE_CLOCK_POWER})
        EXPECT_THAT(params[power], IsBits(0.0f)) << Params::enum_to_string(power);
    for (const auto count : counts)
        EXPECT_EQ(params[count], 0) << Params::enum_to_string(count);
}

TEST(CleClk, ShippedDataGiveBelievablePower)
{
    Params params;
    for (const auto count : {Params::NUM_CLOCKED_SLICES, Params::NUM_FF_SLICES})
        params[count] = 1000;
    for (const auto count : {Params::NUM_IMUX_SLICES, Params::NUM_LUTRAM_SLICES, Params::NUM_SRL_SLICES})
        params[count] = 0;
    params[Params::CLOCK_FREQ] = 300.0f;
    params = calculateShipped<Model>(params);
    EXPECT_THAT(params[Params::CLE_CLOCK_POWER], testing::AllOf(testing::Gt(3.0f), testing::Lt(20.0f))); // mW
    EXPECT_GT(params[Params::FF_CLK_POWER], params[Params::MODULATION_POWER]);
}

} // namespace zelm::test::cleClkTest

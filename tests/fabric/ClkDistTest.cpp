#include "fabric/ZelmOrvaneClkDistModel.h"

#include "support/BlockFixture.h"

namespace zelm::test::clkDistTest {

using Model = ZelmOrvaneClkDistModel;
using Params = Model::Params;

constexpr std::string_view kTables = R"(
  CURRENT : {
    HR      = { GATED = 16.0; UNGATED = 1.0; };
    VR      = { GATED = 0.0; UNGATED = 2.0; };
    VR_SSIT = { GATED = 0.0; UNGATED = 4.0; };
    HD      = { GATED = 0.0; UNGATED = 8.0; };
    HD_HSR  = { GATED = 0.0; UNGATED = 16.0; };
    VD      = { GATED = 0.0; UNGATED = 32.0; };
    VD_L1   = { GATED = 0.0; UNGATED = 64.0; };
    VD_L2   = { GATED = 0.0; UNGATED = 128.0; };
    VD_SSIT = { GATED = 0.0; UNGATED = 256.0; };
    HD_LOC  = { GATED = 0.0; UNGATED = 512.0; };
    LEAF    = { GATED = 4096.0; UNGATED = 1024.0; };
    NO_BUFFER = { GATED = 12.0; UNGATED = 4.0; };
    GLOBAL    = { GATED = 0.0; UNGATED = 20.0; };
  };
  SIM_VOLTAGE : { VCCRAM = 0.5; VCCINT = 0.25; };
)";

// Every segment and leaf takes the same current, at other volts than simulated.
constexpr std::string_view kLikeTables = R"(
  CURRENT : {
    HD_LOC    = { GATED = 0.0; UNGATED = 0.55; };
    LEAF      = { GATED = 0.0; UNGATED = 0.55; };
    NO_BUFFER = { GATED = 0.0; UNGATED = 0.55; };
  };
  SIM_VOLTAGE : { VCCRAM = 0.8; VCCINT = 0.8; };
)";

struct Row {
    Params::IntEnum count;
    Params::FloatEnum current;
    float milliamperes; // of two at 500 MHz and 1 V: key x 2 x 500 x (1 / simulated) / 1000, for leaves / sharing loads
};

constexpr Row kRows[] = {
    {Params::HR_COUNT, Params::HR_CUR, 2.0f},
    {Params::VR_COUNT, Params::VR_CUR, 4.0f},
    {Params::VR_SSIT_COUNT, Params::VR_SSIT_CUR, 8.0f},
    {Params::HD_COUNT, Params::HD_CUR, 16.0f},
    {Params::HD_HSR_COUNT, Params::HD_HSR_CUR, 32.0f},
    {Params::VD_COUNT, Params::VD_CUR, 64.0f},
    {Params::VD_L1_COUNT, Params::VD_L1_CUR, 128.0f},
    {Params::VD_L2_COUNT, Params::VD_L2_CUR, 256.0f},
    {Params::VD_SSIT_COUNT, Params::VD_SSIT_CUR, 512.0f},
    {Params::HD_LOC_COUNT, Params::HD_LOC_CUR, 2048.0f},
    {Params::LEAF_1_COUNT, Params::LEAF_1_CUR, 4096.0f},
    {Params::LEAF_2_COUNT, Params::LEAF_2_CUR, 2048.0f},
    {Params::LEAF_4_COUNT, Params::LEAF_4_CUR, 1024.0f},
    {Params::LEAF_8_COUNT, Params::LEAF_8_CUR, 512.0f},
};

class ClkDistTest : public BlockFixture<Model> {
protected:
    ClkDistTest() : BlockFixture(kTables)
    {
        params[Params::CLOCK_FREQ] = 500.0f;
        params[Params::VCCINT] = 1.0f;
        params[Params::VCCRAM] = 1.0f;
    }
};

TEST(ClkDist, EveryCountHasItsCurrent)
{
    std::vector<std::string> counts, outputs,
        expected{"BUFFER_CUR", "CLK_BUF_VCCRAM_PWR", "CLK_NETWORK_VCCINT_PWR", "CLK_NETWORK_VCCRAM_PWR"};
    Params::getIntUserInputNames(counts);
    EXPECT_EQ(counts.size(), std::size(kRows));
    for (const std::string& count : counts)
        expected.push_back(count.substr(0, count.size() - std::string_view("COUNT").size()) + "CUR");
    Params::getFloatModelOutputNames(outputs);
    EXPECT_EQ(outputs, expected);
}

TEST_F(ClkDistTest, AFreshBlockHasItsBufferOnly)
{
    params.reset();
    calculate();
    for (const Row& row : kRows) {
        EXPECT_EQ(params[row.count], 0) << Params::enum_to_string(row.count);
        EXPECT_THAT(params[row.current], IsBits(0.0f)) << Params::enum_to_string(row.current);
    }
    EXPECT_THAT(params[Params::CLK_NETWORK_VCCINT_PWR], IsBits(0.0f));
    EXPECT_THAT(params[Params::CLK_NETWORK_VCCRAM_PWR], IsBits(0.0f));
    EXPECT_EQ(params[Params::BUF_TYPE], "NO_BUFFER");
    EXPECT_NEAR(params[Params::BUFFER_CUR], 1.152, 1e-6);           // 4 uA/MHz x 200 MHz x 0.72 V / 0.5 V
    EXPECT_NEAR(params[Params::CLK_BUF_VCCRAM_PWR], 0.82944, 1e-6); // x 0.72 V
}

TEST_F(ClkDistTest, EachRowHasItsCountKeyRailAndDivisor)
{
    for (const Row& row : kRows) {
        for (const Row& other : kRows)
            params[other.count] = 0;
        params[row.count] = 2;
        calculate();
        for (const Row& other : kRows)
            EXPECT_THAT(params[other.current], IsBits(&other == &row ? row.milliamperes : 0.0f))
                << Params::enum_to_string(other.current) << " with " << Params::enum_to_string(row.count);
    }
}

TEST_F(ClkDistTest, PowersAddTheirRailsCurrents)
{
    for (const Row& row : kRows)
        params[row.count] = 2;
    params[Params::BUF_TYPE] = "GLOBAL";
    calculate();
    EXPECT_THAT(params[Params::CLK_NETWORK_VCCRAM_PWR], IsBits(1022.0f)); // 2 + 4 + ... + 512
    EXPECT_THAT(params[Params::CLK_NETWORK_VCCINT_PWR], IsBits(9728.0f)); // 2048 + 4096 + 2048 + 1024 + 512
    EXPECT_THAT(params[Params::BUFFER_CUR], IsBits(20.0f));               // 20 uA/MHz x 500 MHz x 1 V / 0.5 V
    EXPECT_THAT(params[Params::CLK_BUF_VCCRAM_PWR], IsBits(20.0f));
}

TEST_F(ClkDistTest, CurrentsScaleLinearlyWithTheVoltage)
{
    for (const Row& row : kRows)
        params[row.count] = 2;
    params[Params::VCCRAM] = 2.0f;
    params[Params::VCCINT] = 4.0f;
    calculate();
    EXPECT_THAT(params[Params::HD_CUR], IsBits(32.0f));
    EXPECT_THAT(params[Params::BUFFER_CUR], IsBits(8.0f));
    EXPECT_THAT(params[Params::LEAF_1_CUR], IsBits(16384.0f));
    EXPECT_THAT(params[Params::CLK_NETWORK_VCCRAM_PWR], IsBits(4088.0f));   // x 2^2
    EXPECT_THAT(params[Params::CLK_NETWORK_VCCINT_PWR], IsBits(155648.0f)); // x 4^2
}

TEST_F(ClkDistTest, GatingMixesTheCurrents)
{
    params[Params::HR_COUNT] = 2;
    params[Params::LEAF_1_COUNT] = 2;
    const auto expectCurrents = [&](float gating, float hr, float leaf, float buffer) {
        params[Params::GATING_PROB] = gating;
        calculate();
        EXPECT_THAT(params[Params::HR_CUR], IsBits(hr)) << gating;
        EXPECT_THAT(params[Params::LEAF_1_CUR], IsBits(leaf)) << gating;
        EXPECT_THAT(params[Params::BUFFER_CUR], IsBits(buffer)) << gating;
    };
    expectCurrents(0.0f, 2.0f, 4096.0f, 4.0f);
    expectCurrents(1.0f, 32.0f, 16384.0f, 12.0f);
    expectCurrents(0.25f, 9.5f, 7168.0f, 6.0f); // a quarter of the way
}

TEST_F(ClkDistTest, AMissingRailGivesATinyRatio)
{
    load(R"(
        CURRENT : { HR = { GATED = 1.0; UNGATED = 1.0; }; NO_BUFFER = { GATED = 1.0; UNGATED = 1.0; }; };
        SIM_VOLTAGE : { VCCINT = 0.25; };)");
    params[Params::HR_COUNT] = 1;
    calculate();
    EXPECT_GT(params[Params::HR_CUR], 0.0f); // 500 MHz x 1 V / FLT_MAX / 1000
    EXPECT_LT(params[Params::HR_CUR], 1e-38f);
    EXPECT_LT(params[Params::BUFFER_CUR], 1e-38f);
}

TEST_F(ClkDistTest, ARailOfZeroVoltsGivesNoCurrent)
{
    load(R"(
        CURRENT : { HD = { GATED = 1.0; UNGATED = 1.0; }; HD_LOC = { GATED = 1.0; UNGATED = 1.0; };
                    LEAF = { GATED = 1.0; UNGATED = 1.0; }; NO_BUFFER = { GATED = 1.0; UNGATED = 1.0; }; };
        SIM_VOLTAGE : { VCCINT = 0.0; VCCRAM = 0.0; };)");
    params[Params::HD_COUNT] = 1;
    params[Params::LEAF_8_COUNT] = 1;
    calculate();
    for (const auto cell : {Params::HD_CUR, Params::HD_LOC_CUR, Params::LEAF_8_CUR, Params::BUFFER_CUR})
        EXPECT_THAT(params[cell], IsBits(0.0f)) << Params::enum_to_string(cell);
}

TEST_F(ClkDistTest, LocalDistributionFollowsTheMainOneUnlessSet)
{
    params[Params::HD_COUNT] = 3;
    calculate();
    EXPECT_EQ(params[Params::HD_LOC_COUNT], 3);
    EXPECT_THAT(params[Params::HD_LOC_CUR], IsBits(3072.0f)); // 512 x 3 x 500 x 4 / 1000
    params[Params::HD_COUNT] = 5;
    calculate();
    EXPECT_EQ(params[Params::HD_LOC_COUNT], 3); // the default stays in the cell
    params[Params::HD_LOC_COUNT] = 1;
    calculate();
    EXPECT_THAT(params[Params::HD_LOC_CUR], IsBits(1024.0f));
}

TEST_F(ClkDistTest, ASharedLeafCostsLess)
{
    for (const auto count : {Params::LEAF_1_COUNT, Params::LEAF_2_COUNT, Params::LEAF_4_COUNT, Params::LEAF_8_COUNT})
        params[count] = 10;
    calculate();
    const float leaf = params[Params::LEAF_1_CUR];
    EXPECT_THAT(leaf, IsBits(20480.0f));
    EXPECT_THAT(params[Params::LEAF_2_CUR], IsBits(leaf / 2));
    EXPECT_THAT(params[Params::LEAF_4_CUR], IsBits(leaf / 4));
    EXPECT_THAT(params[Params::LEAF_8_CUR], IsBits(leaf / 8));
}

TEST_F(ClkDistTest, SegmentsAreNarrowedBeforeTheDivisionAndLeavesBehindIt)
{
    load(kLikeTables);
    params[Params::CLOCK_FREQ] = 200.0f;
    params[Params::VCCINT] = 0.75f;
    params[Params::HD_LOC_COUNT] = 1;
    params[Params::LEAF_1_COUNT] = 1;
    calculate();
    const double ratio = 0.75f / 0.8f;
    const double microamperes = static_cast<double>(0.55f) * 200.0 * ratio;
    const float narrowedOnce = static_cast<float>(microamperes / 1000.0);
    const float narrowedTwice = static_cast<float>(static_cast<double>(static_cast<float>(microamperes)) / 1000.0);
    ASSERT_NE(narrowedOnce, narrowedTwice);
    EXPECT_THAT(params[Params::HD_LOC_CUR], IsBits(narrowedTwice));
    EXPECT_THAT(params[Params::LEAF_1_CUR], IsBits(narrowedOnce));
}

TEST_F(ClkDistTest, TheBufferDividesTheFrequencyFirst)
{
    load(kLikeTables);
    params[Params::CLOCK_FREQ] = 105.0f;
    params[Params::VCCRAM] = 0.75f;
    calculate();
    const double ratio = 0.75f / 0.8f;
    const float dividedFirst =
        static_cast<float>(static_cast<double>(0.55f) * (static_cast<double>(105.0f / 1000.0f) * ratio));
    ASSERT_NE(dividedFirst, static_cast<float>(static_cast<double>(0.55f) * (105.0 * ratio) / 1000.0));
    EXPECT_THAT(params[Params::BUFFER_CUR], IsBits(dividedFirst));
}

TEST(ClkDist, ShippedDataGiveBelievablePower)
{
    Params params;
    params[Params::CLOCK_FREQ] = 300.0f;
    params[Params::HR_COUNT] = 2;
    params[Params::VR_COUNT] = 2;
    params[Params::VD_COUNT] = 2;
    params[Params::HD_COUNT] = 6;
    params[Params::LEAF_1_COUNT] = 80;
    for (const char* buffer : {"NO_BUFFER", "GLOBAL", "GLOBAL_CE", "GLOBAL_DIV", "GLOBAL_MUX", "HARD_IP"}) {
        params[Params::BUF_TYPE] = buffer;
        params = calculateShipped<Model>(params);
        EXPECT_THAT(params[Params::CLK_BUF_VCCRAM_PWR], testing::AllOf(testing::Gt(0.02f), testing::Lt(1.0f)))
            << buffer;
    }
    EXPECT_THAT(params[Params::CLK_NETWORK_VCCRAM_PWR], testing::AllOf(testing::Gt(2.0f), testing::Lt(15.0f)));
    EXPECT_THAT(params[Params::CLK_NETWORK_VCCINT_PWR], testing::AllOf(testing::Gt(4.0f), testing::Lt(30.0f)));
    const float ungated = params[Params::CLK_NETWORK_VCCINT_PWR];
    params[Params::GATING_PROB] = 1.0f;
    params = calculateShipped<Model>(params);
    EXPECT_LT(params[Params::CLK_NETWORK_VCCINT_PWR], 0.1f * ungated);
    for (const Row& row : kRows) { // every segment is in the table
        params[row.count] = 1;
        params = calculateShipped<Model>(params);
        EXPECT_THAT(params[row.current], testing::AllOf(testing::Gt(0.0f), testing::Lt(5.0f)))
            << Params::enum_to_string(row.current);
    }
}

} // namespace zelm::test::clkDistTest

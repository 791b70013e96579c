#include "clocking/ZelmOrvanePspllModel.h"

#include "support/BlockFixture.h"

namespace zelm::test::pspllTest {

using Params = ZelmOrvanePspllParams;

constexpr std::string_view kTables = R"(COMMON_DATA : {
    IVCC_AUX_AVDD_REGULATOR = 1.0; IVCC_AUX_CHARGE_PUMP = 2.0; IVCC_AUX_LFDRV_KVCO = 3.0; IVCC_AUX_VCO_RING = 0.5;
    IVCCINT_FREQ_COMP = 4.0; IVCCINT_CTRL_LOGIC = 5.0; IVCCINT_VCO_RING_VCO_LS = 0.125;
    IVCCINT_PFD = 0.5; IVCCINT_INPUT_COUNTERS = 0.25; IVCCINT_OUTPUT_COUNTERS = 2.0; IVCCINT_OUTPUT_DRIVERS = 8.0;
    VCCINT_SIM = 0.7; FUDGE_FACTOR = 2.0; };)";

class PspllTest : public BlockFixture<ZelmOrvanePspllModel> {
protected:
    // A VCO at 128 MHz, the output at 64 MHz.
    PspllTest() : BlockFixture(kTables)
    {
        params[Params::INPUT_FREQUENCY] = 32.0f;
        params[Params::M_COUNTER] = 4;
    }
};

TEST_F(PspllTest, DefaultFrequencies)
{
    params.reset();
    calculate();
    EXPECT_THAT(params[Params::PFD_CLOCK], IsBits(43.0f));
    EXPECT_THAT(params[Params::FVCO], IsBits(4300.0f));
    EXPECT_EQ(params[Params::CLKOUT_DIVIDE], 2);
    EXPECT_THAT(params[Params::CLOCKOUT], IsBits(2150.0f));
}

TEST_F(PspllTest, CurrentsByHand)
{
    calculate();
    EXPECT_THAT(params[Params::VCC_AUX_BASE_CURRENT], IsBits(6.0f)); // 1 + 2 + 3
    EXPECT_THAT(params[Params::VCC_AUX_VCO_CURRENT], IsBits(64.0f)); // 128 x 0.5
    EXPECT_THAT(params[Params::VCC_AUX_INT_CURRENT], IsBits(70.0f));
    EXPECT_THAT(params[Params::VCC_AUX_CURRENT], IsBits(140.0f));
    EXPECT_THAT(params[Params::VCCINT_BASE_CURRENT], IsBits(9.0f));       // 4 + 5
    EXPECT_THAT(params[Params::VCCINT_VCO_CURRENT], IsBits(64.0f));       // 128 x 4 x 0.125
    EXPECT_THAT(params[Params::VCCINT_PFD_CLOCK_CURRENT], IsBits(32.0f)); // 32 x 0.5 + 2 x 32 x 0.25
    EXPECT_THAT(params[Params::VCCINT_CLKOUT_CURRENT], IsBits(768.0f));   // (2 x 2 + 8) x 64
    EXPECT_THAT(params[Params::VCCINT_INT_CURRENT], IsBits(873.0f));
    EXPECT_NEAR(params[Params::VCCINT_CURRENT], 873.0 * 2.0 * 0.7 / 0.925, 1e-3);
}

TEST_F(PspllTest, TheLastDivisionIsInDouble)
{
    bool differs = false;
    for (int multiply = 4; multiply < 20; ++multiply) {
        params[Params::M_COUNTER] = multiply;
        calculate();
        const float product = params[Params::VCCINT_INT_CURRENT] * 2.0f * 0.7f;
        EXPECT_THAT(params[Params::VCCINT_CURRENT], IsBits(static_cast<float>(product / 0.925)));
        differs = differs || !sameBits(params[Params::VCCINT_CURRENT], product / 0.925f);
    }
    EXPECT_TRUE(differs);
}

TEST_F(PspllTest, TheDividerIsAPowerOfTwo)
{
    struct Row {
        int exponent, divide;
        float clock;
    };
    for (const Row& row : {Row{0, 1, 128.0f}, Row{1, 2, 64.0f}, Row{5, 32, 4.0f}, Row{30, 1073741824, 0x1p-23f},
                           Row{-1, 0, 0.0f}, // a half, truncated
                           Row{31, std::numeric_limits<int>::min(), -0x1p-24f}}) {
        params[Params::CLKOUT_DIVIDE_EXP] = row.exponent;
        calculate();
        EXPECT_EQ(params[Params::CLKOUT_DIVIDE], row.divide) << row.exponent;
        EXPECT_THAT(params[Params::CLOCKOUT], IsBits(row.clock)) << row.exponent;
    }
}

TEST_F(PspllTest, TheInputDividerChangesNothing)
{
    calculate();
    EXPECT_EQ(params[Params::D_COUNTER], zelm::unsetInt);
    EXPECT_EQ(model.getDCounter(params, ZelmOrvanePspllData::getGlobal()), 1);
    const std::string before = params.reflect();
    for (const int divide : {0, 1, 7}) {
        params[Params::D_COUNTER] = divide;
        calculate();
        params[Params::D_COUNTER] = 1;
        EXPECT_EQ(params.reflect(), before) << divide;
    }
}

TEST(Pspll, ShippedDataGiveAboutTenMilliamperes)
{
    const Params params = calculateShipped<ZelmOrvanePspllModel>();
    for (const auto cell : {Params::VCC_AUX_CURRENT, Params::VCCINT_CURRENT}) {
        EXPECT_GT(params[cell], 3.0f);
        EXPECT_LT(params[cell], 30.0f);
    }
}

} // namespace zelm::test::pspllTest

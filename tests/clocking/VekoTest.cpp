#include "clocking/ZelmOrvaneVekoModel.h"

#include "clocking/GeneratorFixture.h"
#include "support/BlockFixture.h"

namespace zelm::test::vekoTest {

using Params = ZelmOrvaneVekoParams;

std::string tables(std::string_view factor = "2.0", std::string_view simVoltage = "0.5")
{
    return R"(COMMON_DATA : {
        IVCCAUX_AVDD_REGULATOR = 2.0; IVCCAUX_CHARGE_PUMP = 3.0; IVCCAUX_LFDRV_KVCO = 4.0;
        IVCCAUX_VCO_RING_pMHz = 0.5;
        IVCCINT_FREQ_COMP = 5.0; IVCCINT_CTRL_LOGIC = 6.0; IVCCINT_VCO_RING_pMHz = 0.25;
        IVCCINT_PFD = 0.5; IVCCINT_INPUT_COUNTERS = 0.125;
        IVCCINT_INTERPOLATOR = 2.0; IVCCINT_OUTPUT_COUNTERS = 4.0; IVCCINT_OUTPUT_DRIVER = 8.0;
        IVCCINT_SPREAD_SPECTRUM = 16.0;
        FUDGE_FACTOR_AUX = 8.0; FUDGE_FACTOR_INT = 0.5;
        FUDGE_FACTOR = )" +
           std::string(factor) + "; VCCRAM_SIM = " + std::string(simVoltage) + "; };";
}

class VekoTest : public GeneratorFixture<ZelmOrvaneVekoModel> {
protected:
    VekoTest() : GeneratorFixture(tables())
    {
        params[Params::VCCRAM] = 0.25f;
    }
};

TEST(Veko, OutputFamilyIsMembersTimesMetrics)
{
    expectOutputFamily<Params>(7, {"CLOCKOUT#", "VCCRAM_CLKOUT#_CURRENT"});
}

TEST_F(VekoTest, VccauxByHand)
{
    calculate();
    EXPECT_THAT(params[Params::VCCAUX_BASE_CURRENT], IsBits(9.0f)); // 2 + 3 + 4
    EXPECT_THAT(params[Params::VCCAUX_VCO_CURRENT], IsBits(64.0f)); // 128 x 0.5
    EXPECT_THAT(params[Params::VCCAUX_INT_CURRENT], IsBits(69.0f)); // 9 + 64 - 8 / 2
    EXPECT_THAT(params[Params::VCCAUX_PWR], IsBits(207.0f));        // 2 x 69 x 1.5
}

TEST_F(VekoTest, VccramByHand)
{
    calculate();
    EXPECT_THAT(params[Params::CLOCKFBOUT], IsBits(32.0f)); // the detector's clock
    EXPECT_THAT(params[Params::VCCRAM_BASE_CURRENT], IsBits(11.0f));
    EXPECT_THAT(params[Params::VCCRAM_VCO_CURRENT], IsBits(128.0f));         // 128 x 4 x 0.25
    EXPECT_THAT(params[Params::VCCRAM_PFD_CLOCK_CURRENT], IsBits(32.0f));    // 32 x 0.5 + 2 x 64 x 0.125
    EXPECT_THAT(params[Params::VCCRAM_CLOCKFBOUT_CURRENT], IsBits(1536.0f)); // (4 x 2 + 4 x 4 + 8 + 16) x 32
    EXPECT_THAT(params[Params::VCCRAM_CLKOUT0_CURRENT], IsBits(1280.0f));    // (2 x 2 + 2 x 4 + 8) x 64
    EXPECT_THAT(params[Params::VCCRAM_CLKOUT1_CURRENT], IsBits(1024.0f));    // (4 x 2 + 4 x 4 + 8) x 32
    EXPECT_THAT(params[Params::VCCRAM_INT_CURRENT], IsBits(2005.5f)); // (11 + 128 + 32 + 1536 + 1280 + 1024) x 0.5
    // 2 x 2005.5 x 0.25 x 0.25 / 0.5: the voltage enters twice
    EXPECT_THAT(params[Params::VCCRAM_PWR], IsBits(501.375f));
    params[Params::CLKOUT6_DIVIDE] = 2;
    calculate();
    EXPECT_THAT(params[Params::VCCRAM_INT_CURRENT], IsBits(2645.5f)); // output 6 adds 1280 x 0.5
}

TEST_F(VekoTest, OnlyOnSpreadsTheFeedbackClock)
{
    for (const std::string_view value : {"OFF", "on", "YES", ""}) {
        params[Params::SPREAD_SPECTRUM] = value;
        calculate();
        EXPECT_THAT(params[Params::VCCRAM_CLOCKFBOUT_CURRENT], IsBits(1024.0f)) << value; // without 16 x 32
    }
}

TEST_F(VekoTest, ADivideOfOneIsNotUsedAndOthersRunOverAClockOfZero)
{
    params[Params::CLKOUT1_DIVIDE] = 0;
    params[Params::CLKOUT2_DIVIDE] = -2;
    calculate();
    EXPECT_THAT(params[Params::VCCRAM_CLKOUT1_CURRENT], IsBits(0.0f));
    EXPECT_THAT(params[Params::VCCRAM_CLKOUT2_CURRENT], IsBits(-0.0f)); // (-4 - 8 + 8) x 0
    EXPECT_THAT(params[Params::VCCRAM_CLKOUT3_CURRENT], IsBits(0.0f));
    EXPECT_THAT(params[Params::CLOCKOUT3], IsBits(0.0f));
}

TEST_F(VekoTest, ZeroCalibrationIsGuarded)
{
    load(tables("0.0", "0.5"));
    calculate();
    EXPECT_THAT(params[Params::VCCAUX_INT_CURRENT], IsBits(73.0f)); // nothing is taken off
    EXPECT_THAT(params[Params::VCCAUX_PWR], IsBits(0.0f));
    load(tables("2.0", "0.0"));
    calculate();
    EXPECT_THAT(params[Params::VCCRAM_PWR], IsBits(0.0f));
}

TEST_F(VekoTest, AMissingRowFlowsOn)
{
    load("COMMON_DATA : { IVCCAUX_AVDD_REGULATOR = 1.0; };");
    calculate();
    EXPECT_FALSE(std::isfinite(params[Params::VCCAUX_PWR]));
    EXPECT_FALSE(std::isfinite(params[Params::VCCRAM_PWR]));
}

TEST(Veko, ShippedDataGiveTensOfMilliwatts)
{
    const Params params = calculateShipped<ZelmOrvaneVekoModel>();
    EXPECT_GT(params[Params::VCCAUX_PWR], 8.0f);
    EXPECT_LT(params[Params::VCCAUX_PWR], 30.0f);
    EXPECT_GT(params[Params::VCCRAM_PWR], 10.0f); // seven outputs at 1067 MHz
    EXPECT_LT(params[Params::VCCRAM_PWR], 50.0f);
}

} // namespace zelm::test::vekoTest

#include "clocking/ZelmOrvaneRuskModel.h"

#include "clocking/GeneratorFixture.h"
#include "support/BlockFixture.h"

namespace zelm::test::ruskTest {

using Params = ZelmOrvaneRuskParams;

std::string tables(std::string_view factor = "2.0", std::string_view simVoltage = "0.5")
{
    return R"(COMMON_DATA : {
        IVCC_AUX_DVDD_REGULATOR = 1.0; IVCC_AUX_CHARGE_PUMP = 2.0; IVCC_AUX_LFDRV_KVCO = 3.0; IVCCINT_FREQ_COMP = 4.0;
        IVCC_AUX_VCO_RING = 0.5; IVCC_AUX_VCO_RING_VCO_LS = 0.125; IAVDD_KELP_OUTPUT_DRIVER = 0.25;
        IVCCINT_CTRL_LOGIC = 5.0; IVCCINT_PFD = 0.5; IVCCINT_INPUT_COUNTERS = 0.125;
        IVCCINT_INTERPOLATOR = 2.0; IVCCINT_OUTPUT_COUNTERS = 4.0; IVCCINT_OUTPUT_DRIVER = 8.0;
        IVCCINT_KELP_OUTPUT_DRIVER = 0.5; FUDGE_FACTOR_AUX = 8.0; FUDGE_FACTOR_INT = 0.5;
        FUDGE_FACTOR = )" +
           std::string(factor) + "; VCCINTIO_SIM = " + std::string(simVoltage) + "; };";
}

class RuskTest : public GeneratorFixture<ZelmOrvaneRuskModel> {
protected:
    RuskTest() : GeneratorFixture(tables())
    {
        params[Params::KELP_DIVIDE] = 2;
        params[Params::VCCINTIO] = 0.25f;
    }
};

TEST(Rusk, OutputFamilyIsMembersTimesMetrics)
{
    expectOutputFamily<Params>(4, {"CLOCKOUT#", "VCCINTIO_CLKOUT#_CURRENT"});
}

TEST_F(RuskTest, VccauxByHand)
{
    calculate();
    EXPECT_THAT(params[Params::VCC_AUX_BASE_CURRENT], IsBits(10.0f));       // 1 + 2 + 3, and the compensation's 4
    EXPECT_THAT(params[Params::VCC_AUX_VCO_CURRENT], IsBits(128.0f));       // (0.5 + 4 x 0.125) x 128
    EXPECT_THAT(params[Params::VCC_AUX_KELP_CLOCK_CURRENT], IsBits(16.0f)); // 64 x 0.25
    EXPECT_THAT(params[Params::VCC_AUX_INT_CURRENT], IsBits(150.0f));       // 10 + 128 + 16 - 8 / 2
    EXPECT_THAT(params[Params::VCCAUX_PWR], IsBits(450.0f));                // 2 x 150 x 1.5
}

TEST_F(RuskTest, VccintioByHand)
{
    calculate();
    EXPECT_THAT(params[Params::CLOCKFBOUT], IsBits(32.0f)); // the detector's clock
    EXPECT_THAT(params[Params::VCCINTIO_BASE_CURRENT], IsBits(5.0f));
    EXPECT_THAT(params[Params::VCCINTIO_PFD_CLOCK_CURRENT], IsBits(32.0f));   // 32 x 0.5 + 2 x 64 x 0.125
    EXPECT_THAT(params[Params::VCCINTIO_CLOCKFBOUT_CURRENT], IsBits(512.0f)); // 4 x 32 x 4
    EXPECT_THAT(params[Params::VCCINTIO_CLKOUT0_CURRENT], IsBits(1280.0f));   // ((2 + 4) x 2 + 8) x 64
    EXPECT_THAT(params[Params::VCCINTIO_CLKOUT1_CURRENT], IsBits(1024.0f));   // ((2 + 4) x 4 + 8) x 32
    EXPECT_THAT(params[Params::VCCINTIO_KELP_CLK_CURRENT], IsBits(32.0f));    // 64 x 0.5
    EXPECT_THAT(params[Params::VCCINTIO_INT_CURRENT], IsBits(1442.5f));       // (5 + 32 + 512 + 1280 + 1024 + 32) x 0.5
    // 2 x 1442.5 x 0.25 x 0.25 / 0.5: the voltage enters twice
    EXPECT_THAT(params[Params::VCCINTIO_PWR], IsBits(360.625f));
}

TEST_F(RuskTest, TheIoPhyClockCountsFromADivideOfOneOn)
{
    params[Params::KELP_DIVIDE] = 1;
    calculate();
    EXPECT_THAT(params[Params::KELP_CLOCK], IsBits(128.0f));
    params[Params::KELP_DIVIDE] = 0;
    calculate();
    EXPECT_THAT(params[Params::KELP_CLOCK], IsBits(0.0f));
    EXPECT_THAT(params[Params::VCCINTIO_KELP_CLK_CURRENT], IsBits(0.0f));
    params[Params::KELP_DIVIDE] = zelm::unsetInt;
    calculate();
    EXPECT_EQ(params[Params::KELP_DIVIDE], 1);
}

TEST_F(RuskTest, ADivideOfOneIsNotUsedAndOthersRunOverAClockOfZero)
{
    params[Params::CLKOUT1_DIVIDE] = 0;
    params[Params::CLKOUT2_DIVIDE] = -2;
    calculate();
    EXPECT_THAT(params[Params::VCCINTIO_CLKOUT1_CURRENT], IsBits(0.0f));
    EXPECT_THAT(params[Params::VCCINTIO_CLKOUT2_CURRENT], IsBits(-0.0f)); // (-12 + 8) x 0
    EXPECT_THAT(params[Params::VCCINTIO_CLKOUT3_CURRENT], IsBits(0.0f));
}

TEST_F(RuskTest, ZeroCalibrationIsGuarded)
{
    load(tables("0.0", "0.5"));
    calculate();
    EXPECT_THAT(params[Params::VCC_AUX_INT_CURRENT], IsBits(154.0f)); // nothing is taken off
    EXPECT_THAT(params[Params::VCCAUX_PWR], IsBits(0.0f));
    load(tables("2.0", "0.0"));
    calculate();
    EXPECT_THAT(params[Params::VCCINTIO_PWR], IsBits(0.0f));
}

TEST(Rusk, ShippedDataGiveTensOfMilliwatts)
{
    const Params params = calculateShipped<ZelmOrvaneRuskModel>();
    EXPECT_GT(params[Params::VCCAUX_PWR], 8.0f);
    EXPECT_LT(params[Params::VCCAUX_PWR], 30.0f);
    EXPECT_GT(params[Params::VCCINTIO_PWR], 5.0f);
    EXPECT_LT(params[Params::VCCINTIO_PWR], 30.0f);
}

} // namespace zelm::test::ruskTest

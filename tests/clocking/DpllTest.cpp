#include "clocking/ZelmOrvaneDpllModel.h"

#include "clocking/GeneratorFixture.h"
#include "support/BlockFixture.h"

namespace zelm::test::dpllTest {

using Params = ZelmOrvaneDpllParams;

std::string tables(std::string_view vccintSim = "0.7", std::string_view voltages = "VCCINT = 0.5; VCCRAM = 0.25;")
{
    return R"(COMMON_DATA : {
        IVCC_AUX_DVDD_REGULATOR = 2.0; IVCC_AUX_CTRL_LOGIC_SDM = 3.0;
        IVCC_AUX_DIGITAL_SYNC = 0.5; IVCC_AUX_VCO_RING = 0.25; IVCC_AUX_TDC = 0.125; IVCC_AUX_SYNTH_LOGIC_CLKV = 0.125;
        IVCC_AUX_SYNTH_LOGIC_CLKREF = 0.5; IVCC_AUX_INPUT_COUNTERS = 0.25;
        IVCC_AUX_INTERPOLATOR = 2.0; IVCC_AUX_OUTPUT_COUNTERS = 1.0;
        IVCCINT_MISC = 4.0; IVCCINT_OUTPUT_DRIVER = 0.5;
        FUDGE_FACTOR = 2.0; FUDGE_FACTOR_AUX = 0.5; FUDGE_FACTOR_INT = 0.25;
        VCCINT_SIM = )" +
           std::string(vccintSim) + "; SIM_VOLTAGE : { VCCAUX = 1.25; " + std::string(voltages) + " }; };";
}

class DpllTest : public GeneratorFixture<ZelmOrvaneDpllModel> {
protected:
    DpllTest() : GeneratorFixture(tables())
    {
        params[Params::VCCINT] = 0.5f;
        params[Params::VCCRAM] = 0.25f;
    }
};

TEST(Dpll, OutputFamilyIsMembersTimesMetrics)
{
    expectOutputFamily<Params>(4, {"CLOCKOUT#", "VCCINT_CLKOUT#_CURRENT", "VCC_AUX_CLKOUT#_CURRENT"});
}

TEST_F(DpllTest, VccauxByHand)
{
    calculate();
    EXPECT_THAT(params[Params::VCC_AUX_BASE_CURRENT], IsBits(5.0f));
    EXPECT_THAT(params[Params::VCC_AUX_VCO_CURRENT], IsBits(128.0f));      // (0.5 + 0.25 + 0.125 + 0.125) x 128
    EXPECT_THAT(params[Params::VCC_AUX_PFD_CLOCK_CURRENT], IsBits(32.0f)); // 32 x 0.5 + 64 x 0.25, the input once
    EXPECT_THAT(params[Params::VCC_AUX_CLKOUT0_CURRENT], IsBits(384.0f));  // 2 x 64 x (2 + 1)
    EXPECT_THAT(params[Params::VCC_AUX_CLKOUT1_CURRENT], IsBits(384.0f));  // 4 x 32 x (2 + 1)
    EXPECT_THAT(params[Params::VCC_AUX_CLKOUT2_CURRENT], IsBits(0.0f));
    EXPECT_THAT(params[Params::VCC_AUX_INT_CURRENT], IsBits(466.5f)); // (5 + 128 + 32 + 384 + 384) x 0.5
    EXPECT_THAT(params[Params::VCCAUX_PWR], IsBits(1166.25f));        // 466.5 x 2 x 1.25
}

TEST_F(DpllTest, VccauxPowerHoldsAtTheCharacterisationVoltage)
{
    calculate();
    EXPECT_THAT(params[Params::VCCAUX], IsBits(zelm::unsetFloat)) << "no formula reads it";
    params[Params::VCCAUX] = 1.8f;
    calculate();
    EXPECT_THAT(params[Params::VCCAUX_PWR], IsBits(1166.25f));
}

TEST_F(DpllTest, DigitalCurrentByHand)
{
    calculate();
    EXPECT_THAT(params[Params::VCCINT_BASE_CURRENT], IsBits(4.0f));
    EXPECT_THAT(params[Params::VCCINT_VCO_CURRENT], IsBits(0.0f));
    EXPECT_THAT(params[Params::VCCINT_PFD_CLOCK_CURRENT], IsBits(0.0f));
    EXPECT_THAT(params[Params::VCCINT_CLKOUT0_CURRENT], IsBits(32.0f)); // 64 x 0.5
    EXPECT_THAT(params[Params::VCCINT_CLKOUT1_CURRENT], IsBits(16.0f)); // 32 x 0.5
    EXPECT_THAT(params[Params::VCCINT_CLKOUT3_CURRENT], IsBits(0.0f));
    EXPECT_THAT(params[Params::VCCINT_INT_CURRENT], IsBits(13.0f)); // (4 + 32 + 16) x 0.25
}

TEST_F(DpllTest, DigitalPowerGoesOnInDoubleFromTheDivisionOn)
{
    bool differs = false;
    for (int multiply = 4; multiply < 20; ++multiply) {
        params[Params::M_COUNTER] = multiply;
        calculate();
        const float product = params[Params::VCCINT_INT_CURRENT] * 2.0f * 0.7f;
        // The supplies stand at their characterisation voltages.
        EXPECT_THAT(params[Params::VCCINT_PWR], IsBits(static_cast<float>(product / 0.825 * 0.5)));
        EXPECT_THAT(params[Params::VCCRAM_PWR], IsBits(static_cast<float>(product / 0.825 * 0.25)));
        differs = differs || !sameBits(params[Params::VCCINT_PWR], product / 0.825f * 0.5f);
    }
    EXPECT_TRUE(differs);
}

TEST_F(DpllTest, VoltageActsToThePower2Point3)
{
    load(tables("0.825"));
    params[Params::VCCINT] = 1.0f;
    params[Params::VCCRAM] = 0.125f;
    calculate();
    // 26 x 0.5 and 26 x 0.25 at the characterisation voltage; 2^2.3 is 4 x the tenth root of 8
    EXPECT_NEAR(params[Params::VCCINT_PWR], 13.0 * 4.924577653379664, 1e-5);
    EXPECT_NEAR(params[Params::VCCRAM_PWR], 6.5 / 4.924577653379664, 1e-6);
}

TEST_F(DpllTest, BothDigitalRailsFollowOneCurrent)
{
    load(tables("0.7", "VCCINT = 0.8; VCCRAM = 0.8;"));
    params[Params::VCCINT] = params[Params::VCCRAM] = 0.77f;
    calculate();
    EXPECT_GT(params[Params::VCCINT_PWR], 0.0f);
    EXPECT_THAT(params[Params::VCCRAM_PWR], IsBits(params[Params::VCCINT_PWR]));
}

TEST_F(DpllTest, ASimulationVoltageOfZeroGivesZero)
{
    load(tables("0.7", "VCCINT = 0.0; VCCRAM = 0.25;"));
    calculate();
    EXPECT_THAT(params[Params::VCCINT_PWR], IsBits(0.0f));
    EXPECT_GT(params[Params::VCCRAM_PWR], 0.0f);
}

TEST_F(DpllTest, ADivideOfOneIsNotUsedAndOthersRunOverAClockOfZero)
{
    params[Params::CLKOUT1_DIVIDE] = 0;
    params[Params::CLKOUT2_DIVIDE] = -2;
    calculate();
    EXPECT_THAT(params[Params::VCC_AUX_CLKOUT1_CURRENT], IsBits(0.0f));
    EXPECT_THAT(params[Params::VCC_AUX_CLKOUT2_CURRENT], IsBits(-0.0f)); // -2 x 0 x 3
    EXPECT_THAT(params[Params::VCC_AUX_CLKOUT3_CURRENT], IsBits(0.0f));
    EXPECT_THAT(params[Params::VCCINT_CLKOUT1_CURRENT], IsBits(0.0f));
}

TEST(Dpll, ShippedDataGiveTensOfMilliwatts)
{
    const Params params = calculateShipped<ZelmOrvaneDpllModel>();
    EXPECT_GT(params[Params::VCCAUX_PWR], 8.0f);
    EXPECT_LT(params[Params::VCCAUX_PWR], 40.0f);
    for (const auto cell : {Params::VCCINT_PWR, Params::VCCRAM_PWR}) {
        EXPECT_GT(params[cell], 2.0f);
        EXPECT_LT(params[cell], 20.0f);
    }
}

} // namespace zelm::test::dpllTest

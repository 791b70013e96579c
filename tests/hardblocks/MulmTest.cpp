#include "hardblocks/ZelmOrvaneMulmModel.h"

#include "hardblocks/Supply.h"
#include "support/BlockFixture.h"

namespace zelm::test::mulmTest {

using Params = ZelmOrvaneMulmParams;
using Mulm = ZelmOrvaneMulmModel;
using MulmShippedData = ShippedBlockFixture<Mulm>;

class MulmTest : public BlockFixture<Mulm> {
protected:
    MulmTest()
        : BlockFixture(R"(POWER_DATA : { PCIE_A0_CH8_GEN4 = 0.7; PCIE_A1_CH8_GEN4 = 0.9; PIPE_CH-2_GEN1 = 5.0; };
                           FACTORS : { VCCINT_SIM = 0.39; };)")
    {
    }
};

TEST_F(MulmTest, DefaultsAreEightLanesOfTheFirstController)
{
    calculate();
    EXPECT_EQ(params[Params::POWER_DATA_TAG], "PCIE_A0_CH8_GEN4");
    EXPECT_EQ(params[Params::INVALID_CONFIG], "NO");
    EXPECT_THAT(params[Params::VCCINT], IsBits(0.78f)); // twice the reference
    EXPECT_THAT(params[Params::VCCINT_POWER], IsBits(static_cast<float>(static_cast<double>(0.7f) * kDoubledSupply)));
}

TEST_F(MulmTest, ThePowerIsInDouble)
{
    params[Params::MULM_MODE] = "PCIE_A1";
    params[Params::VCCINT] = 1.56f; // four times the reference: 2^4.6
    calculate();
    const double factor = kDoubledSupply * kDoubledSupply;
    const float inDouble = static_cast<float>(static_cast<double>(0.9f) * factor);
    ASSERT_NE(inDouble, 0.9f * static_cast<float>(factor));
    EXPECT_THAT(params[Params::VCCINT_POWER], IsBits(inDouble));
}

TEST_F(MulmTest, TheTagHasTheWidthAsItIs)
{
    params[Params::MULM_MODE] = "PIPE";
    params[Params::LINK_WIDTH] = -2;
    params[Params::LINK_SPEED] = "GEN1";
    params[Params::VCCINT] = 0.39f;
    calculate();
    EXPECT_EQ(params[Params::POWER_DATA_TAG], "PIPE_CH-2_GEN1");
    EXPECT_THAT(params[Params::VCCINT_POWER], IsBits(5.0f));
}

TEST_F(MulmTest, AnUnknownTagIsInvalidAndDrawsNothing)
{
    params[Params::LINK_SPEED] = "GEN3";
    calculate();
    EXPECT_EQ(params[Params::INVALID_CONFIG], "YES");
    EXPECT_THAT(params[Params::VCCINT_POWER], IsBits(0.0f));
}

TEST_F(MulmTest, AReferenceOfZeroGivesNoPower)
{
    load("POWER_DATA : { PCIE_A0_CH8_GEN4 = 0.7; }; FACTORS : { VCCINT_SIM = 0.0; };");
    calculate();
    EXPECT_EQ(params[Params::INVALID_CONFIG], "NO");
    EXPECT_THAT(params[Params::VCCINT_POWER], IsBits(0.0f)); // not infinity
}

TEST_F(MulmShippedData, PowerRisesWithSpeedAndWidth)
{
    for (const char* mode : {"PCIE_A0", "PCIE_A1"}) {
        for (const int width : {1, 2, 4, 8, 16}) {
            float slower = 10.0f;
            for (const char* speed : {"GEN1", "GEN2", "GEN3", "GEN4", "GEN5"}) {
                params[Params::MULM_MODE] = mode;
                params[Params::LINK_WIDTH] = width;
                params[Params::LINK_SPEED] = speed;
                calculate();
                EXPECT_EQ(params[Params::INVALID_CONFIG], "NO") << params[Params::POWER_DATA_TAG];
                EXPECT_GT(params[Params::VCCINT_POWER], slower) << params[Params::POWER_DATA_TAG];
                slower = params[Params::VCCINT_POWER];
            }
            EXPECT_LT(slower, 600.0f);
        }
    }
}

} // namespace zelm::test::mulmTest

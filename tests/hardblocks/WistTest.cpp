#include "hardblocks/ZelmOrvaneWistModel.h"

#include "hardblocks/Supply.h"
#include "support/BlockFixture.h"

namespace zelm::test::wistTest {

using Params = ZelmOrvaneWistParams;
using Wist = ZelmOrvaneWistModel;
using WistShippedData = ShippedBlockFixture<Wist>;

// Full activity at GEN1_x2_A2, characterised at 0.44 V, so that the default supply is twice the reference:
// A0 2 x 100, A1 3 x 100, interconnect 0.5 x 400, DMA 4 x 200, coherent L2 (0.25 + 0.125) x 800.
constexpr std::string_view kGroups = R"(
    POWER : {
        DYNAMIC : { PCIEA_CORE0_DYNAMIC = 2.0; PCIEA_CORE1_DYNAMIC = 3.0; WIST_INT_WRAP = 0.5; WIST_DMA = 4.0;
                    WIST_CMN_WRAP = 0.25; WIST_MIC = 0.125; };
        PLL : { STATIC_VCCAUX = 1.5; POWER_DYNAMIC_AUX = 8.0; POWER_DYNAMIC_VCCINT = 6.0; }; };
    CONFIG_POWER_DATA : {
        GEN1_x2_A2 : { GENPCIE_USER_CLK_CORE0 = 100; GENPCIE_USER_CLK_CORE1 = 100; ARTERIS = 400; DMA = 200;
                       GENWIST_CORE_CLK = 800; };
        GEN2_x4_A2 : { GENPCIE_USER_CLK_CORE0 = 101; GENPCIE_USER_CLK_CORE1 = 102; ARTERIS = 401; DMA = 201;
                       GENWIST_CORE_CLK = 801; };
        GEN1_x2_A1 : { GENPCIE_USER_CLK_CORE0 = 100; GENPCIE_USER_CLK_CORE1 = 100; ARTERIS = 400; DMA = 200;
                       GENWIST_CORE_CLK = 800; };
        GEN1_x2_A3 : { GENPCIE_USER_CLK_CORE0 = 100; GENPCIE_USER_CLK_CORE1 = 100; ARTERIS = 400; DMA = 200;
                       GENWIST_CORE_CLK = 800; };
        GEN3_x2_A2 : { GENPCIE_USER_CLK_CORE0 = 100; GENPCIE_USER_CLK_CORE1 = 100; DMA = 200;
                       GENWIST_CORE_CLK = 800; };
        GEN4_x2_A2 : { ARTERIS = 400; }; };
    FACTORS : { VCCINT_SIM = 0.44; };)";

class WistTest : public BlockFixture<Wist> {
protected:
    WistTest() : BlockFixture(kGroups) {}

    void loadWith(std::string_view before, std::string_view after)
    {
        std::string groups(kGroups);
        load(groups.replace(groups.find(before), before.size(), after));
    }

    // The supply of the characterisation, where the voltage factor is 1.
    void atReference()
    {
        params[Params::VCCINT] = 0.44f;
    }
};

TEST_F(WistTest, PartsPayPerMegahertz)
{
    calculate();
    EXPECT_EQ(params[Params::CONFIG_TAG], "GEN1_x2_A2");
    EXPECT_EQ(params[Params::CONFIG_TAG_A1], "GEN1_x2_A2");
    EXPECT_THAT(params[Params::PCIE_A0_DYNAMIC_POWER], IsBits(200.0f));
    EXPECT_THAT(params[Params::PCIE_A1_DYNAMIC_POWER], IsBits(300.0f));
    EXPECT_THAT(params[Params::TOP_DYNAMIC_POWER], IsBits(200.0f));
    EXPECT_THAT(params[Params::PCIE_DMA_DYNAMIC_POWER], IsBits(800.0f));
    EXPECT_THAT(params[Params::CMN_L2_CPI_DYNAMIC_POWER], IsBits(300.0f));
}

TEST_F(WistTest, DefaultsShareTheModuleNineToOne)
{
    calculate();
    // A0: 200 + 200 x 0.9 + 0 x 800 + 300 x 0.9 = 650, each step rounded to single; then in double with the PLL
    const float a0 = 200.0f + 200.0f * 0.9f + 300.0f * 0.9f;
    const float a1 = 300.0f + 200.0f * 0.1f + 300.0f * 0.1f;
    EXPECT_NEAR(a0, 650.0, 1e-3);
    EXPECT_NEAR(a1, 350.0, 1e-3);
    EXPECT_THAT(params[Params::VCCINT_POWER_A0], IsBits(static_cast<float>(a0 * kDoubledSupply + 6.0)));
    EXPECT_THAT(params[Params::VCCINT_POWER_A1], IsBits(static_cast<float>(a1 * kDoubledSupply)));
    EXPECT_THAT(params[Params::VCCAUX_POWER], IsBits(9.5f));
}

TEST_F(WistTest, ThePllIsNeitherScaledNorRoundedBefore)
{
    params[Params::WIST_MODE_A0] = "OTHER"; // the controller alone: 200
    calculate();
    EXPECT_THAT(params[Params::VCCINT_POWER_A0], IsBits(static_cast<float>(200.0 * kDoubledSupply + 6.0)));
    EXPECT_NEAR(params[Params::VCCINT_POWER_A0], 990.9155, 1e-3); // 984.9155 + 6
    loadWith("POWER_DYNAMIC_VCCINT = 6.0", "POWER_DYNAMIC_VCCINT = 0.00009");
    calculate();
    const double pll = static_cast<double>(0.00009f);
    const float roundedOnce = static_cast<float>(200.0 * kDoubledSupply + pll);
    const float roundedTwice = static_cast<float>(200.0 * kDoubledSupply) + 0.00009f;
    ASSERT_NE(roundedOnce, roundedTwice);
    EXPECT_THAT(params[Params::VCCINT_POWER_A0], IsBits(roundedOnce));
}

TEST_F(WistTest, OneChannelRunsTheFirstControllerAndThreeRunNone)
{
    atReference();
    params[Params::PCI_CHANNELS] = 1;
    calculate();
    EXPECT_EQ(params[Params::PCIE_A0_ACTIVE], 1);
    EXPECT_EQ(params[Params::PCIE_A1_ACTIVE], 0);
    EXPECT_THAT(params[Params::VCCINT_POWER_A1], IsBits(200.0f * 0.1f + 300.0f * 0.1f)); // its share of the module
    params[Params::PCI_CHANNELS] = 3;
    calculate();
    EXPECT_EQ(params[Params::CONFIG_TAG], "GEN1_x2_A3");
    EXPECT_EQ(params[Params::INVALID_CONFIG], "NO");
    EXPECT_EQ(params[Params::PCIE_A0_ACTIVE], 0);
    EXPECT_EQ(params[Params::PCIE_A1_ACTIVE], 0);
}

TEST_F(WistTest, AnInvalidFirstLinkTakesBothCoresAway)
{
    params[Params::LINK_SPEED_A0] = "GEN9";
    calculate();
    EXPECT_EQ(params[Params::INVALID_CONFIG], "YES");
    EXPECT_EQ(params[Params::INVALID_CONFIG_A1], "NO");
    EXPECT_THAT(params[Params::VCCINT_POWER_A0], IsBits(6.0f)); // the PLL
    EXPECT_THAT(params[Params::VCCINT_POWER_A1], IsBits(0.0f));
    EXPECT_EQ(params[Params::PCIE_A0_FREQ], 0);
    EXPECT_EQ(params[Params::PCIE_A1_FREQ], 100); // A1's own link is fine
    EXPECT_EQ(params[Params::TOP_FREQ], 0);
    EXPECT_EQ(params[Params::PCIE_DMA_FREQ], 0);
    EXPECT_EQ(params[Params::CMN_L2_CPI_FREQ], 0);
}

TEST_F(WistTest, AnInvalidSecondLinkTakesTheSecondCoreAway)
{
    atReference();
    params[Params::LINK_WIDTH_A1] = 3;
    calculate();
    EXPECT_EQ(params[Params::CONFIG_TAG_A1], "GEN1_x3_A2");
    EXPECT_EQ(params[Params::INVALID_CONFIG], "NO");
    EXPECT_EQ(params[Params::INVALID_CONFIG_A1], "YES");
    EXPECT_THAT(params[Params::VCCINT_POWER_A0], IsBits(656.0f)); // 650 and the PLL
    EXPECT_THAT(params[Params::VCCINT_POWER_A1], IsBits(0.0f));
    EXPECT_EQ(params[Params::PCIE_A1_FREQ], 0);
}

TEST_F(WistTest, TheInterconnectsClockDecidesWhetherALinkIsKnown)
{
    params[Params::LINK_SPEED_A0] = "GEN3"; // has all clocks but that one
    params[Params::LINK_SPEED_A1] = "GEN4"; // has that one alone
    calculate();
    EXPECT_EQ(params[Params::INVALID_CONFIG], "YES");
    EXPECT_EQ(params[Params::INVALID_CONFIG_A1], "NO");
    EXPECT_EQ(params[Params::PCIE_A1_FREQ], zelm::unsetInt); // the miss flows on
}

TEST_F(WistTest, TheSecondLinkClocksItsControllerOnly)
{
    params[Params::LINK_SPEED_A1] = "GEN2";
    params[Params::LINK_WIDTH_A1] = 4;
    calculate();
    EXPECT_EQ(params[Params::PCIE_A0_FREQ], 100);
    EXPECT_EQ(params[Params::PCIE_A1_FREQ], 102);
    EXPECT_EQ(params[Params::TOP_FREQ], 400);
    EXPECT_EQ(params[Params::PCIE_DMA_FREQ], 200);
    EXPECT_EQ(params[Params::CMN_L2_CPI_FREQ], 800);
}

TEST_F(WistTest, ModesDecideWhatWorks)
{
    struct {
        const char* mode;
        float top, cmn;
        int dma, pcie;
    } const rows[] = {{"WIST_CCIX", 0.9f, 0.9f, 0, 1},         {"WIST_PS", 1.0f, 0.0f, 1, 1},
                      {"WIST_STREAM_W_DMA", 0.0f, 0.0f, 1, 1}, {"WIST_STREAM", 0.0f, 0.0f, 0, 1},
                      {"wist_ccix", 0.0f, 0.0f, 0, 1},         {"NONE", 0.0f, 0.0f, 0, 0}};
    for (const auto& row : rows) {
        params[Params::WIST_MODE_A0] = row.mode;
        params[Params::WIST_MODE_A1] = row.mode;
        calculate();
        EXPECT_THAT(params[Params::TOP_ACTIVE_A0], IsBits(row.top)) << row.mode;
        EXPECT_THAT(params[Params::CMN_L2_CPI_ACTIVE_A0], IsBits(row.cmn)) << row.mode;
        EXPECT_EQ(params[Params::PCIE_DMA_ACTIVE_A0], row.dma) << row.mode;
        EXPECT_EQ(params[Params::PCIE_A0_ACTIVE], row.pcie) << row.mode;
        EXPECT_EQ(params[Params::PCIE_A1_ACTIVE], row.pcie) << row.mode;
        // A1 takes a share of the module in the coherent mode only.
        const float shareA1 = row.cmn == 0.9f ? 0.1f : 0.0f;
        EXPECT_THAT(params[Params::TOP_ACTIVE_A1], IsBits(shareA1)) << row.mode;
        EXPECT_THAT(params[Params::CMN_L2_CPI_ACTIVE_A1], IsBits(shareA1)) << row.mode;
    }
}

TEST_F(WistTest, TheDmaEngineCountsOnTheFirstControllerAlone)
{
    atReference();
    params[Params::WIST_MODE_A0] = "WIST_STREAM_W_DMA";
    params[Params::WIST_MODE_A1] = "WIST_STREAM_W_DMA";
    calculate();
    EXPECT_THAT(params[Params::VCCINT_POWER_A0], IsBits(1006.0f)); // 200 + 800 + 6
    EXPECT_THAT(params[Params::VCCINT_POWER_A1], IsBits(300.0f));
    params[Params::WIST_MODE_A0] = "WIST_PS";
    calculate();
    EXPECT_THAT(params[Params::VCCINT_POWER_A0], IsBits(1206.0f)); // 200 + 200 + 800 + 6
}

TEST_F(WistTest, AnUnusedFirstControllerStillDrawsItsPll)
{
    params[Params::WIST_MODE_A0] = "NONE";
    calculate();
    EXPECT_THAT(params[Params::VCCINT_POWER_A0], IsBits(6.0f));
    EXPECT_GT(params[Params::VCCINT_POWER_A1], 1000.0f); // 350 at twice the reference
}

TEST_F(WistTest, AReferenceOfZeroLeavesThePll)
{
    loadWith("VCCINT_SIM = 0.44", "VCCINT_SIM = 0.0");
    calculate();
    EXPECT_THAT(params[Params::VCCINT_POWER_A0], IsBits(6.0f));
    EXPECT_THAT(params[Params::VCCINT_POWER_A1], IsBits(0.0f));
}

TEST_F(WistTest, NoFormulaReadsTheAuxiliarySupply)
{
    calculate();
    EXPECT_THAT(params[Params::VCCAUX], IsBits(zelm::unsetFloat));
    EXPECT_THAT(model.getVccaux(params, ZelmOrvaneWistData::getGlobal()), IsBits(1.5f));
    params[Params::VCCAUX] = 3.0f;
    calculate();
    EXPECT_THAT(params[Params::VCCAUX_POWER], IsBits(9.5f));
}

TEST_F(WistShippedData, EveryLinkOfUpToSixteenLanesIsKnown)
{
    for (const char* speed : {"GEN1", "GEN2", "GEN3", "GEN4", "ESM20G", "ESM25G"}) {
        for (const int width : {1, 2, 4, 8, 16}) {
            params[Params::PCI_CHANNELS] = width == 16 ? 1 : 2; // two controllers share sixteen lanes
            params[Params::LINK_SPEED_A0] = params[Params::LINK_SPEED_A1] = speed;
            params[Params::LINK_WIDTH_A0] = params[Params::LINK_WIDTH_A1] = width;
            calculate();
            EXPECT_EQ(params[Params::INVALID_CONFIG], "NO") << params[Params::CONFIG_TAG];
            EXPECT_GT(params[Params::PCIE_A1_FREQ], 0);
            EXPECT_LE(params[Params::PCIE_A1_FREQ], 1000) << params[Params::CONFIG_TAG];
            const float watts = (params[Params::VCCINT_POWER_A0] + params[Params::VCCINT_POWER_A1]) / 1000.0f;
            EXPECT_GT(watts, 0.8f) << params[Params::CONFIG_TAG];
            EXPECT_LT(watts, 5.0f) << params[Params::CONFIG_TAG];
        }
    }
    EXPECT_LT(params[Params::VCCAUX_POWER], 30.0f);
}

} // namespace zelm::test::wistTest

#include "hardblocks/ZelmOrvaneWist5Model.h"

#include "hardblocks/Supply.h"
#include "support/BlockFixture.h"

#include <sstream>

namespace zelm::test::wist5Test {

using Params = ZelmOrvaneWist5Params;
using Wist5 = ZelmOrvaneWist5Model;
using Wist5ShippedData = ShippedBlockFixture<Wist5>;

// Powers per MHz, dynamic and clock: DMA 3, L2 5, bottom 9, top 17, PCIE 33, CMN 65 and its parts 129, 257 and 513.
// The default supply is twice the reference.
constexpr std::string_view kGroups = R"(
    WIST5_DATA : {
        WIST5_DMA_DYNAMIC_MHZ = 2.0;            WIST5_DMA_CLOCK_MHZ = 1.0;
        WIST5_L2_DYNAMIC_MHZ = 4.0;             WIST5_L2_CLOCK_MHZ = 1.0;
        WIST5_INT_WRAP_BOT_DYNAMIC_MHZ = 8.0;   WIST5_INT_WRAP_BOT_CLOCK_MHZ = 1.0;
        WIST5_INT_WRAP_TOP_DYNAMIC_MHZ = 16.0;  WIST5_INT_WRAP_TOP_CLOCK_MHZ = 1.0;
        WIST5_PCIE_DYNAMIC_MHZ = 32.0;          WIST5_PCIE_CLOCK_MHZ = 1.0;
        WIST5_CMN_DYNAMIC_MHZ = 64.0;           WIST5_CMN_CLOCK_MHZ = 1.0;
        WIST5_CMN_CXLA_DYNAMIC_MHZ = 128.0;     WIST5_CMN_CXLA_CLOCK_MHZ = 1.0;
        WIST5_CMN_HNF_DYNAMIC_MHZ = 256.0;      WIST5_CMN_HNF_CLOCK_MHZ = 1.0;
        WIST5_CMN_CXRH_DYNAMIC_MHZ = 512.0;     WIST5_CMN_CXRH_CLOCK_MHZ = 1.0;
        PLL_DYNAMIC_POWER_2160MHZ_VCCAUX = 6.0; PLL_DYNAMIC_POWER_4320MHZ_VCCAUX = 10.32;
        PLL_DYNAMIC_POWER_2160MHZ_VCCINT = 4.0; PLL_DYNAMIC_POWER_4320MHZ_VCCINT = 9.0; };
    SIM_CONDITIONS : { PSIM_VOLTAGE = 0.44; };)";

class Wist5Test : public BlockFixture<Wist5> {
protected:
    Wist5Test() : BlockFixture(kGroups) {}

    // Links as "mode speed width".
    void links(const char* a0, const char* a1 = "WIST5_CCIX GEN5 x8")
    {
        std::istringstream first(a0), second(a1);
        first >> params[Params::A0_MODES] >> params[Params::A0_LINK_SPEED] >> params[Params::A0_LINK_WIDTH];
        second >> params[Params::A1_MODES] >> params[Params::A1_LINK_SPEED] >> params[Params::A1_LINK_WIDTH];
        calculate();
    }
};

TEST_F(Wist5Test, DefaultsRunTheFastClocksWithoutDma)
{
    calculate();
    EXPECT_EQ(params[Params::A0_WIST5_MODES], "WIST5_CCIX_A0_GEN5_x8");
    EXPECT_EQ(params[Params::A1_WIST5_MODES], "WIST5_CCIX_A1_GEN5_x8");
    EXPECT_EQ(params[Params::CMN_CLK_FREQ], 1200);
    EXPECT_EQ(params[Params::DMA0_FREQUENCY], 0);
    EXPECT_EQ(params[Params::DMA1_FREQUENCY], 0);
    EXPECT_EQ(params[Params::INT_WRAP_CLK_BOT_FREQ], 1200);
    EXPECT_EQ(params[Params::INT_WRAP_CLK_TOP_FREQ], 1200);
    EXPECT_EQ(params[Params::L2_CLK_FREQUENCY], 1200);
    EXPECT_EQ(params[Params::PCI_OPERATIONAL_FREQUENCY_PCIE0], 1000);
    EXPECT_EQ(params[Params::PCI_OPERATIONAL_FREQUENCY_PCIE1], 1000);
}

TEST_F(Wist5Test, AnUnusedControllerHasNoLinkName)
{
    links("NONE GEN4 X8", "none GEN4 X8");
    EXPECT_EQ(params[Params::A0_WIST5_MODES], "NONE");
    EXPECT_EQ(params[Params::A1_WIST5_MODES], "none_A1_GEN4_X8"); // names are compared exactly
}

TEST_F(Wist5Test, CmnClockFollowsItsRules)
{
    struct {
        const char *a0, *a1;
        int megahertz;
    } const rows[] = {
        {"WIST5_DMA GEN5 x8", "WIST5_DMA GEN5 x8", 0},
        {"WIST5_DMA GEN3 x8", "NONE GEN2 x8", 0}, // no coherent mode: its absence wins over the speed
        {"WIST5_CCIX GEN5 x8", "NONE GEN5 x8", 1200},
        {"NONE GEN5 x8", "WIST5_CCIX GEN5 x8", 1200},
        {"WIST5_CCIX ESM20G x8", "NONE GEN5 x8", 900},
        {"WIST5_CCIX GEN3 x8", "NONE GEN5 x8", 900},
        {"WIST5_CCIX GEN2 x8", "NONE GEN5 x8", 900},
        {"WIST5_CCIX GEN5 x8", "NONE ESM20G x8", 900}, // an unused controller's speed counts
        {"WIST5_CCIX GEN5 x8", "NONE GEN3 x8", 900},
        {"WIST5_CCIX GEN5 x8", "NONE GEN2 x8", 900},
        {"WIST5_CCIX GEN x8", "WIST5_CCIX GEN4 x8", 1200},
        {"WIST5_CCIX ESM25G x8", "WIST5_CCIX ESM25G x8", 1200},
    };
    for (const auto& row : rows) {
        links(row.a0, row.a1);
        EXPECT_EQ(params[Params::CMN_CLK_FREQ], row.megahertz) << row.a0 << ", " << row.a1;
    }
}

TEST_F(Wist5Test, FirstDmaClockFollowsItsRules)
{
    struct {
        const char *a0, *a1;
        int megahertz;
    } const rows[] = {
        {"WIST5_PCISTREAM ESM25G x8", "WIST5_DMA GEN3 x8", 0}, // the speed wins over what gives 250
        {"WIST5_PCISTREAM ESM20G x8", "WIST5_DMA GEN3 x8", 0},
        {"WIST5_PCISTREAM GEN4 x8", "WIST5_DMA GEN3 x8", 500}, // and so does this one
        {"NONE GEN4 x8", "WIST5_DMA GEN5 x8", 500},            // an unused controller's engine too
        {"WIST5_DMA GEN5 X8", "WIST5_DMA GEN5 x8", 500},       // the width with a capital X
        {"WIST5_DMA GEN5 x8", "WIST5_DMA GEN5 x8", 0},         // and without
        {"WIST5_DMA GEN5 x8", "WIST5_CCIX GEN5 X8", 250},
        {"WIST5_DMA GEN5 x8", "WIST5_CCIX GEN5 x8", 0},
        {"WIST5_DMA GEN5 x8", "WIST5_DMA GEN3 x8", 250}, // the other controller's speed
        {"WIST5_DMA GEN3 x8", "WIST5_DMA GEN5 x8", 0},   // not its own
        {"WIST5_DMA GEN2 x8", "WIST5_DMA GEN3 x8", 250}, // even where its own would give 125
        {"WIST5_DMA GEN2 x8", "WIST5_DMA GEN5 x8", 125},
        {"WIST5_PCISTREAM GEN2 x8", "WIST5_DMA GEN5 x8", 250},
        {"WIST5_DMA GEN x8", "WIST5_DMA GEN4 x8", 0},
    };
    for (const auto& row : rows) {
        links(row.a0, row.a1);
        EXPECT_EQ(params[Params::DMA0_FREQUENCY], row.megahertz) << row.a0 << ", " << row.a1;
    }
}

TEST_F(Wist5Test, SecondDmaClockFollowsItsRules)
{
    struct {
        const char* a1;
        int megahertz;
    } const rows[] = {
        {"NONE GEN4 x8", 0},         {"WIST5_CCIX ESM25G X8", 0},    {"WIST5_CCIX ESM20G X8", 0},
        {"WIST5_CCIX GEN4 x8", 500}, {"WIST5_DMA GEN5 X8", 500},     {"WIST5_DMA GEN5 x8", 0},
        {"WIST5_CCIX GEN3 x8", 250}, {"WIST5_CCIX GEN5 X8", 250},    {"WIST5_CCIX GEN2 x8", 125},
        {"WIST5_CCIX GEN5 x8", 0},   {"WIST5_PCISTREAM GEN5 x8", 0},
    };
    for (const auto& row : rows) {
        links("WIST5_CCIX GEN3 X8", row.a1); // A0's link has no say
        EXPECT_EQ(params[Params::DMA1_FREQUENCY], row.megahertz) << row.a1;
    }
}

TEST_F(Wist5Test, InterconnectClocksFollowTheirControllers)
{
    struct {
        const char* speed;
        int megahertz;
    } const rows[] = {{"ESM20G", 825},  {"GEN3", 825},  {"GEN2", 825}, {"GEN4", 1000},
                      {"ESM25G", 1000}, {"GEN5", 1200}, {"GEN", 1200}, {"gen4", 1200}};
    for (const auto& row : rows) {
        const std::string link = std::string("WIST5_DMA ") + row.speed + " x8";
        links(link.c_str());
        EXPECT_EQ(params[Params::INT_WRAP_CLK_BOT_FREQ], row.megahertz) << row.speed;
        EXPECT_EQ(params[Params::INT_WRAP_CLK_TOP_FREQ], 1200) << row.speed;
        links("WIST5_DMA GEN5 x8", link.c_str());
        EXPECT_EQ(params[Params::INT_WRAP_CLK_BOT_FREQ], 1200) << row.speed;
        EXPECT_EQ(params[Params::INT_WRAP_CLK_TOP_FREQ], row.megahertz) << row.speed;
    }
}

TEST_F(Wist5Test, AnUnusedControllerSlowsOrStopsTheInterconnect)
{
    links("NONE GEN4 x8", "WIST5_CCIX GEN4 x8");
    EXPECT_EQ(params[Params::INT_WRAP_CLK_BOT_FREQ], 0);
    EXPECT_EQ(params[Params::INT_WRAP_CLK_TOP_FREQ], 0); // whatever A1 runs
    links("NONE GEN4 x8", "NONE GEN4 x8");
    EXPECT_EQ(params[Params::INT_WRAP_CLK_TOP_FREQ], 0);
    links("WIST5_CCIX GEN4 x8", "NONE GEN4 x8");
    EXPECT_EQ(params[Params::INT_WRAP_CLK_BOT_FREQ], 1000);
    EXPECT_EQ(params[Params::INT_WRAP_CLK_TOP_FREQ], 100);
}

TEST_F(Wist5Test, L2ClockFollowsItsRules)
{
    struct {
        const char* a0;
        int megahertz;
    } const rows[] = {
        {"WIST5_PCISTREAM GEN5 x8", 0}, {"WIST5_PCISTREAM GEN2 x8", 0}, {"NONE GEN2 x8", 0},
        {"WIST5_CCIX ESM20G x8", 900},  {"WIST5_CCIX GEN2 x8", 900},    {"WIST5_CCIX GEN x8", 900},
        {"WIST5_CCIX GEN3 x8", 1200}, // slow for CMN, fast here
        {"WIST5_CCIX GEN4 x8", 1200},   {"WIST5_DMA ESM25G x8", 1200},
    };
    for (const auto& row : rows) {
        links(row.a0, "WIST5_CCIX GEN2 x8"); // A1's link has no say
        EXPECT_EQ(params[Params::L2_CLK_FREQUENCY], row.megahertz) << row.a0;
    }
}

TEST_F(Wist5Test, ControllerClocksFollowTheirLinks)
{
    struct {
        const char* link;
        int megahertz;
    } const rows[] = {{"NONE GEN4 x8", 0},         {"WIST5_DMA ESM25G x8", 196}, {"WIST5_DMA ESM20G x8", 157},
                      {"WIST5_DMA GEN4 x8", 250},  {"WIST5_DMA GEN3 x8", 250},   {"WIST5_DMA GEN2 x8", 250},
                      {"WIST5_DMA GEN5 x8", 1000}, {"WIST5_DMA GEN x8", 1000}};
    for (const auto& row : rows) {
        links(row.link);
        EXPECT_EQ(params[Params::PCI_OPERATIONAL_FREQUENCY_PCIE0], row.megahertz) << row.link;
        EXPECT_EQ(params[Params::PCI_OPERATIONAL_FREQUENCY_PCIE1], 1000) << row.link;
        links("WIST5_DMA GEN5 x8", row.link);
        EXPECT_EQ(params[Params::PCI_OPERATIONAL_FREQUENCY_PCIE0], 1000) << row.link;
        EXPECT_EQ(params[Params::PCI_OPERATIONAL_FREQUENCY_PCIE1], row.megahertz) << row.link;
    }
}

TEST_F(Wist5Test, PartsPayPerMegahertz)
{
    links("WIST5_CCIX GEN4 x8", "WIST5_CCIX GEN2 x4");
    EXPECT_THAT(params[Params::WIST5_DMA0_PWR], IsBits(1500.0f));          // 3 x 500
    EXPECT_THAT(params[Params::WIST5_DMA1_PWR], IsBits(375.0f));           // 3 x 125
    EXPECT_THAT(params[Params::WIST5_L2_PWR], IsBits(6000.0f));            // 5 x 1200
    EXPECT_THAT(params[Params::WIST5_INT_WRAP_BOT_PWR], IsBits(9000.0f));  // 9 x 1000
    EXPECT_THAT(params[Params::WIST5_INT_WRAP_TOP_PWR], IsBits(14025.0f)); // 17 x 825
    EXPECT_THAT(params[Params::WIST5_PCIE0_PWR], IsBits(8250.0f));         // 33 x 250
    EXPECT_THAT(params[Params::WIST5_PCIE1_PWR], IsBits(8250.0f));
    // (65 + 2 x 129 + 2 x 257 + 2 x 513) x 900 = 1863 x 900
    EXPECT_THAT(params[Params::WIST5_CMN_PWR], IsBits(1676700.0f));

    EXPECT_THAT(params[Params::A0_CHANNEL_PWR], IsBits(9750.0f)); // 8250 + 1500
    EXPECT_THAT(params[Params::A1_CHANNEL_PWR], IsBits(8625.0f)); // 8250 + 375
    // 14025 + 9000 + 1676700 + 2 x 6000
    EXPECT_THAT(params[Params::WIST5_TOP_POWER], IsBits(1711725.0f));
}

TEST_F(Wist5Test, TheRailsReadThePllAtDifferentFrequencies)
{
    links("NONE GEN5 x8", "NONE GEN5 x8");
    EXPECT_THAT(params[Params::WIST5_TOP_POWER], IsBits(0.0f));
    // 4.32 over 2160 MHz are 0.002 per MHz: 6 + 440 x 0.002 at 2600 MHz
    EXPECT_THAT(params[Params::DYNAMIC_PWR_VCCAUX], IsBits((10.32f - 6.0f) / 2160.0f * 440.0f + 6.0f));
    EXPECT_NEAR(params[Params::DYNAMIC_PWR_VCCAUX], 6.88, 1e-6);
    EXPECT_NEAR(params[Params::DYNAMIC_PWR_VCC_WIST5], 9.0, 1e-6); // the point at 4320 MHz itself
}

TEST_F(Wist5Test, TheCoreRailIsInMilliwattsAndScaled)
{
    links("WIST5_DMA GEN4 x8", "NONE GEN5 x8");
    // A0: 8250 + 1500; top: 17 x 100 + 9 x 1000 + 0 + 2 x 6000 = 22700
    const float milliwatts = (9750.0f + 0.0f + 22700.0f) * 1000.0f;
    EXPECT_THAT(params[Params::VCC_WIST5], IsBits(0.88f)); // twice the reference
    EXPECT_THAT(params[Params::DYNAMIC_PWR_VCC_WIST5],
                IsBits(static_cast<float>(static_cast<double>(milliwatts) * kDoubledSupply + 9.0)));
}

TEST_F(Wist5Test, TheRailAddsItsPllInDouble)
{
    std::string groups(kGroups);
    const auto set = [&groups](const std::string& item, const std::string& value) {
        const auto at = groups.find(item + " = ") + item.size() + 3;
        groups.replace(at, groups.find(';', at) - at, value);
    };
    set("WIST5_DMA_DYNAMIC_MHZ", "0.00002");
    set("WIST5_DMA_CLOCK_MHZ", "0.0");
    set("PLL_DYNAMIC_POWER_2160MHZ_VCCINT", "0.4");
    set("PLL_DYNAMIC_POWER_4320MHZ_VCCINT", "0.9");
    load(groups);
    links("NONE GEN4 x8", "NONE GEN5 x8"); // the DMA engine alone, at 500 MHz: 0.01 W
    const float milliwatts = 0.00002f * 500.0f * 1000.0f;
    const float slope = (0.9f - 0.4f) / 2160.0f * 2160.0f;
    const double parts = static_cast<double>(milliwatts) * kDoubledSupply;
    const float inDouble = static_cast<float>(parts + static_cast<double>(0.4f) + static_cast<double>(slope));
    ASSERT_NE(inDouble, static_cast<float>(parts) + 0.4f + slope);
    EXPECT_THAT(params[Params::DYNAMIC_PWR_VCC_WIST5], IsBits(inDouble));
}

TEST_F(Wist5Test, AReferenceOfZeroLeavesThePll)
{
    std::string groups(kGroups);
    load(groups.replace(groups.find("PSIM_VOLTAGE = 0.44"), 19, "PSIM_VOLTAGE = 0.0"));
    calculate();
    EXPECT_NEAR(params[Params::DYNAMIC_PWR_VCC_WIST5], 9.0, 1e-6);
}

TEST_F(Wist5Test, NoFormulaReadsTheAuxiliarySupply)
{
    calculate();
    EXPECT_THAT(params[Params::VCCAUX_WIST], IsBits(zelm::unsetFloat));
    EXPECT_THAT(model.getVccauxWist(params, ZelmOrvaneWist5Data::getGlobal()), IsBits(1.2f));
}

TEST_F(Wist5Test, AClockFillsOnlyWhatItReads)
{
    EXPECT_EQ(model.calculateCmnClkFreq(params, ZelmOrvaneWist5Data::getGlobal()), 1200);
    EXPECT_EQ(params[Params::A1_LINK_SPEED], "GEN5");
    EXPECT_EQ(params[Params::A0_WIST5_MODES], zelm::unsetString);
    EXPECT_EQ(params[Params::A0_LINK_WIDTH], zelm::unsetString);
    // All that a rule could read is filled, also behind the first match.
    params[Params::A0_LINK_SPEED] = "ESM25G";
    EXPECT_EQ(model.calculateDma0Frequency(params, ZelmOrvaneWist5Data::getGlobal()), 0);
    EXPECT_EQ(params[Params::A1_WIST5_MODES], "WIST5_CCIX_A1_GEN5_x8");
}

TEST_F(Wist5ShippedData, AModuleTakesSomeWatts)
{
    calculate();
    EXPECT_GT(params[Params::DYNAMIC_PWR_VCC_WIST5], 2000.0f);
    EXPECT_LT(params[Params::DYNAMIC_PWR_VCC_WIST5], 6000.0f);
    EXPECT_GT(params[Params::DYNAMIC_PWR_VCCAUX], 2.0f);
    EXPECT_LT(params[Params::DYNAMIC_PWR_VCCAUX], 50.0f);
    const float coherent = params[Params::DYNAMIC_PWR_VCC_WIST5];
    params[Params::A0_MODES] = params[Params::A1_MODES] = "WIST5_DMA";
    params[Params::A0_LINK_SPEED] = params[Params::A1_LINK_SPEED] = "GEN3";
    calculate();
    EXPECT_LT(params[Params::DYNAMIC_PWR_VCC_WIST5], coherent);
    EXPECT_GT(params[Params::DYNAMIC_PWR_VCC_WIST5], 500.0f);
}

} // namespace zelm::test::wist5Test

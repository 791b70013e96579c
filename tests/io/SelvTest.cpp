#include "io/ZelmOrvaneSelvModel.h"

#include "BufferRows.h"
#include "support/BlockFixture.h"

#include <cfloat>
#include <cmath>
#include <map>

namespace zelm::test::selvTest {

using Params = ZelmOrvaneSelvParams;
using Data = ZelmOrvaneSelvData;
using Model = ZelmOrvaneSelvModel;

const std::vector<std::string> kInputs{"LVDS15",
                                       "DIFF_HSUL_12",
                                       "DIFF_HSTL_I",
                                       "DIFF_SSTL15_VOH75",
                                       "DIFF_SSTL15_VOH80",
                                       "DIFF_SSTL135",
                                       "DIFF_HSTL_I_12",
                                       "DIFF_SSTL12",
                                       "DIFF_POD10",
                                       "DIFF_POD12",
                                       "HSUL_12",
                                       "HSTL_I",
                                       "SSTL15_VOH75",
                                       "SSTL15_VOH80",
                                       "SSTL135",
                                       "HSTL_I_12",
                                       "SSTL12",
                                       "POD10",
                                       "POD12",
                                       "LVDCI_15",
                                       "HSLVDCI_15",
                                       "LVCMOS15",
                                       "LVCMOS12",
                                       "MIPI_DPHY_DCI_HS",
                                       "MIPI_DPHY_LP",
                                       "LVSTL06_12",
                                       "DIFF_LVSTL06_12",
                                       "LVSTL_11_VOH33",
                                       "DIFF_LVSTL_11_VOH33",
                                       "LVSTL_11_VOH50",
                                       "DIFF_LVSTL_11_VOH50"};

const std::vector<std::string> kOutputs{"SSTL12",
                                        "LVDS15",
                                        "LVDS15_FIR",
                                        "DIFF_HSUL_12",
                                        "DIFF_HSTL_I",
                                        "DIFF_SSTL15_VOH75",
                                        "DIFF_SSTL15_VOH80",
                                        "DIFF_SSTL135",
                                        "DIFF_HSTL_I_12",
                                        "DIFF_SSTL12",
                                        "DIFF_POD10",
                                        "DIFF_POD12",
                                        "DIFF_POD12_FIR",
                                        "HSUL_12",
                                        "HSTL_I",
                                        "SSTL15_VOH75",
                                        "SSTL15_VOH80",
                                        "SSTL135",
                                        "HSTL_I_12",
                                        "POD10",
                                        "POD12",
                                        "POD12_FIR",
                                        "HSLVDCI_15",
                                        "LVDCI_15",
                                        "LVCMOS15_2",
                                        "LVCMOS15_4",
                                        "LVCMOS15_6",
                                        "LVCMOS15_8",
                                        "LVCMOS15_12",
                                        "LVCMOS12_2",
                                        "LVCMOS12_4",
                                        "LVCMOS12_6",
                                        "LVCMOS12_8",
                                        "MIPI_DPHY_DCI_HS",
                                        "MIPI_DPHY_LP",
                                        "LVSTL06_12",
                                        "DIFF_LVSTL06_12",
                                        "LVSTL_11_VOH33",
                                        "DIFF_LVSTL_11_VOH33",
                                        "LVSTL_11_VOH50",
                                        "DIFF_LVSTL_11_VOH50"};

// Tables in round numbers. The core and predriver currents of outputs are negative, to show who clamps them.
constexpr std::string_view kInputEntries =
    "VCCINT_IO_DC = 0.5; VCCINT_IO_AC = 0.25; VCCAUX_AC = 5.0; VCCO_AC = 8.0; VCCO_DC = 4.0; VCCO = 1.0; PW = 0.25; "
    "DIFFTERM = 1.5; ODT = 250.0;";
constexpr std::string_view kOutputEntries =
    "VCCINT_IO_DC = -0.5; VCCINT_IO_AC = -0.25; VCCAUX_AC = 5.0; VCCO_PREDRV_DC = -0.75; VCCO_PREDRV_AC = 2.0; "
    "VCCO_AC = 8.0; VCCO_DC = 4.0; OBUF_LOAD = 6.0; VCCO = 1.0; PW = 0.25; TERM = 100.0; RDRV = 50.0;";

std::string tables(std::string_view inputEntries, std::string_view outputEntries)
{
    return "MIPI_DATA : { MIPI_LP_DATARATE = 8.0; };\n"
           "CAP_DATA : { CIO_HP = 2.0; CPKG = 0.5; CPKG_LS = 1.5; };\n"
           "SIM_DATA : { SIM_VOLTAGE = 0.5; };\n"
           "OBUF : { " +
           sameRows(kOutputs, outputEntries) +
           " };\n"
           "IBUF : { " +
           sameRows(kInputs, inputEntries) +
           " };\n"
           "IO_LIST : { INPUT : { SSTL12 = \"1.2\"; }; };";
}

class SelvTest : public BlockFixture<Model> {
protected:
    SelvTest()
    {
        load(tables(kInputEntries, kOutputEntries));
        // The levels below come from 25 ohms against 75: a quarter and three quarters of the supply of 1 V.
        params[Params::INPUT_TERMINATION] = 25.0f;
        params[Params::OUTPUT_IMPEDANCE] = 25.0f;
        params[Params::OFFCHIP_TERMINATION] = 75.0f;
    }

    float cell(const std::string& name)
    {
        const auto found = Params::string_to_float_enum(name);
        EXPECT_NE(found, Params::LastFloat) << name;
        return params[found];
    }
};

void expectClose(float actual, double expected, const std::string& what)
{
    EXPECT_NEAR(actual, expected, 2e-6 * std::max(1.0, std::fabs(expected))) << what;
}

TEST(Selv, StandardsTimesMetricsAreTheListedCells)
{
    EXPECT_EQ(kInputs.size(), 31u);
    EXPECT_EQ(kOutputs.size(), 41u);
    std::vector<std::string> metrics{"AC_VCCAUX_CURRENT",
                                     "AC_VCCIO_CURRENT",
                                     "AC_VCCO_CURRENT",
                                     "DC_VCCAUX_CURRENT",
                                     "DC_VCCIO_CURRENT",
                                     "DC_VCCO_CURRENT",
                                     "OFFCHIP_POWER",
                                     "ONCHIP_POWER",
                                     "PW",
                                     "VOH",
                                     "VOL"};
    expectFamily<Params>("IBUF_", kInputs, metrics,
                         {"IBUF_ENABLE_FACTOR", "IBUF_OFFCHIP_MULTIPLIER", "IBUF_AC_VCCAUX_MULTIPLIER",
                          "IBUF_AC_VCCIO_MULTIPLIER", "IBUF_AC_VCCO_MULTIPLIER", "IBUF_DC_VCCAUX_MULTIPLIER",
                          "IBUF_DC_VCCIO_MULTIPLIER", "IBUF_DC_VCCO_MULTIPLIER"});
    metrics.insert(metrics.end(), {"AC_VCCO_PREDRV_CURRENT", "DC_VCCO_PREDRV_CURRENT"});
    expectFamily<Params>("OBUF_", kOutputs, metrics,
                         {"OBUF_AC_VCCIO_MULTIPLIER", "OBUF_AC_VCCO_MULTIPLIER", "OBUF_AC_VCCO_PREDRV_MULTIPLIER",
                          "OBUF_DC_VCCIO_MULTIPLIER", "OBUF_DC_VCCO_MULTIPLIER", "OBUF_DC_VCCO_PREDRV_MULTIPLIER",
                          "OBUF_OFFCHIP_MULTIPLIER"});
}

TEST_F(SelvTest, CalculateFillsEveryCellButTheOneThatNobodyReads)
{
    calculate();
    for (const ZelmCellInfo& info : Params::cells()) {
        const std::string name(info.name);
        if (info.type == ZelmCellInfo::Type::real)
            EXPECT_NE(cell(name), zelm::unsetFloat) << name;
        else
            EXPECT_EQ(params[Params::string_to_string_enum(name)] == zelm::unsetString, name == "PRE_EMPHASIS") << name;
    }
}

TEST_F(SelvTest, InputsTakeTheirDefaults)
{
    params.resetUserInputs();
    calculate();
    EXPECT_THAT(params[Params::CLOCK_FREQ], IsBits(1000.0f));
    EXPECT_THAT(params[Params::IBUF_DISABLE], IsBits(0.0f));
    EXPECT_THAT(params[Params::INPUT_TERMINATION], IsBits(40.0f));
    EXPECT_THAT(params[Params::OFFCHIP_TERMINATION], IsBits(60.0f));
    EXPECT_THAT(params[Params::OUTPUT_ENABLE], IsBits(0.0f));
    EXPECT_THAT(params[Params::OUTPUT_IMPEDANCE], IsBits(50.0f));
    EXPECT_THAT(params[Params::OUTPUT_LOAD], IsBits(1.5f));
    EXPECT_THAT(params[Params::TERM_DISABLE], IsBits(0.0f));
    EXPECT_THAT(params[Params::TOGGLE_RATE], IsBits(0.125f));
    EXPECT_THAT(params[Params::VCCAUX], IsBits(1.5f));
    EXPECT_THAT(params[Params::VCCO15], IsBits(1.5f));
    EXPECT_THAT(params[Params::VCC_IO], IsBits(0.7f));
    EXPECT_EQ(params[Params::DATA_RATE], "SDR");
    EXPECT_EQ(params[Params::INPUT_IO_STANDARD], "LVCMOS15");
    EXPECT_EQ(params[Params::IO_DIRECTION], "OUTPUT");
    EXPECT_EQ(params[Params::OUTPUT_IO_STANDARD], "SSTL12");
    EXPECT_EQ(Model::getGlobal().getPreEmphasis(params, Data::getGlobal()), "NO");
}

// ---- Families of inputs ----

struct Levels {
    double vol, voh, directCurrent, onchip;
    double offchip = directCurrent - onchip; // at an own supply of 1 V
};

// A split termination to half the supply: 0.375 V and 0.625 V across 2 x 25 ohms, high a quarter of the time.
const Levels kSplit{.vol = 0.375,
                    .voh = 0.625,
                    .directCurrent = (0.375 * 0.25 + 0.625 * 0.75) * 20,
                    .onchip = (0.375 * 0.375 + 0.625 * 0.625) * 20};
const Levels kSplitPair{.vol = 0.375, .voh = 0.625, .directCurrent = 22.5, .onchip = 21.25};
// The same levels and current, but no heat anywhere; the pair counts one line.
const Levels kUnheated{.vol = 0.375, .voh = 0.625, .directCurrent = 11.25, .onchip = 0, .offchip = 0};
// To the supply: low three quarters of the time, with 0.25 V across 25 ohms.
const Levels kPullUp{.vol = 0.75, .voh = 1, .directCurrent = 7.5, .onchip = 1.875};
const Levels kPullUpPair{.vol = 0.75, .voh = 1, .directCurrent = 15, .onchip = 3.75};
const Levels kPullUpEven{.vol = 0.75, .voh = 1, .directCurrent = 5, .onchip = 1.25};
// 0.6 x 75 / 105 low, 54 / 105 more high; 50 ohms to the supply, 75 to ground. The heat counts one line for both.
const double kBoostedHeat = ((3.0 / 52.5 * 3.0 / 52.5 / 50 + 99.0 / 105 * 99.0 / 105 / 75) * 0.25 +
                             (60.0 / 105 * 60.0 / 105 / 50 + 45.0 / 105 * 45.0 / 105 / 75) * 0.75) *
                            1000;
const Levels kBoosted{
    .vol = 45.0 / 105, .voh = 99.0 / 105, .directCurrent = (6 * 0.25 + 60 * 0.75) / 105 * 20, .onchip = kBoostedHeat};
const Levels kBoostedPair{
    .vol = 45.0 / 105, .voh = 99.0 / 105, .directCurrent = (6 * 0.25 + 60 * 0.75) / 105 * 40, .onchip = kBoostedHeat};
// To ground: a quarter of the supply, or of half of it, across 25 ohms, low a quarter of the time in this sense.
const Levels kGrounded{.vol = 0, .voh = 0.25, .directCurrent = 0, .onchip = 0.0625 / 25 * 750};
const Levels kGroundedPair{.vol = 0, .voh = 0.25, .directCurrent = 0, .onchip = 3.75};
const Levels kGroundedHalf{.vol = 0, .voh = 0.125, .directCurrent = 0, .onchip = 0.015625 / 25 * 750};
const Levels kGroundedHalfPair{.vol = 0, .voh = 0.125, .directCurrent = 0, .onchip = 0.9375};
const Levels kNothing{.vol = 0, .voh = 0, .directCurrent = 0, .onchip = 0};

const std::map<std::string, Levels> kInputLevels{
    {"LVDS15", {.vol = 0, .voh = 0, .directCurrent = 0, .onchip = 1.5}}, // DIFFTERM
    {"DIFF_HSUL_12", kUnheated},
    {"DIFF_HSTL_I", kSplitPair},
    {"DIFF_SSTL15_VOH75", kSplitPair},
    {"DIFF_SSTL15_VOH80", kBoostedPair},
    {"DIFF_SSTL135", kSplitPair},
    {"DIFF_HSTL_I_12", kSplitPair},
    {"DIFF_SSTL12", kSplitPair},
    {"DIFF_POD10", kPullUpPair},
    {"DIFF_POD12", kPullUpPair},
    {"HSUL_12", kUnheated},
    {"HSTL_I", kSplit},
    {"SSTL15_VOH75", kSplit},
    {"SSTL15_VOH80", kBoosted},
    {"SSTL135", kSplit},
    {"HSTL_I_12", kSplit},
    {"SSTL12", kSplit},
    {"POD10", kPullUp},
    {"POD12", kPullUp},
    {"LVDCI_15", kPullUpEven},
    {"HSLVDCI_15", kPullUpEven},
    {"LVCMOS15", kNothing},
    {"LVCMOS12", kNothing},
    {"MIPI_DPHY_DCI_HS", {.vol = 0, .voh = 0, .directCurrent = 4, .onchip = 4 * 250.0 / 1000}},
    {"MIPI_DPHY_LP", {.vol = 0, .voh = 0, .directCurrent = 4, .onchip = 4 * 1.5}}, // by the bank's supply
    {"LVSTL06_12", kGroundedHalf},
    {"DIFF_LVSTL06_12", kGroundedHalfPair},
    {"LVSTL_11_VOH33", kGrounded},
    {"DIFF_LVSTL_11_VOH33", kGroundedPair},
    {"LVSTL_11_VOH50", kGrounded},
    {"DIFF_LVSTL_11_VOH50", kGroundedPair},
};

TEST_F(SelvTest, EveryInputHasItsFamilysLevelsAndHeat)
{
    calculate();
    ASSERT_EQ(kInputLevels.size(), 31u);
    for (const auto& [standard, levels] : kInputLevels) {
        expectClose(cell("IBUF_" + standard + "_VOL"), levels.vol, standard + " VOL");
        expectClose(cell("IBUF_" + standard + "_VOH"), levels.voh, standard + " VOH");
        expectClose(cell("IBUF_" + standard + "_DC_VCCO_CURRENT"), levels.directCurrent, standard + " current");
        expectClose(cell("IBUF_" + standard + "_ONCHIP_POWER"), levels.onchip, standard + " on chip");
        expectClose(cell("IBUF_" + standard + "_OFFCHIP_POWER"), levels.offchip, standard + " off chip");
        const bool evenDuty = standard == "LVDCI_15" || standard == "HSLVDCI_15";
        EXPECT_THAT(cell("IBUF_" + standard + "_PW"), IsBits(evenDuty ? 0.5f : 0.25f)) << standard;
    }
}

TEST_F(SelvTest, InputCurrentsAreTheTablesSaveForFewStandards)
{
    calculate();
    for (std::size_t i = 0; i < kInputs.size(); ++i) {
        const std::string& standard = kInputs[i];
        const bool pod = standard == "POD10" || standard == "POD12"; // not their pairs
        const bool dci = standard == "LVDCI_15" || standard == "HSLVDCI_15";
        const bool fast = standard == "MIPI_DPHY_DCI_HS";
        const bool slow = standard == "MIPI_DPHY_LP"; // 62.5 MHz gives way to 8 Mb/s / 2
        const float derating = pod || dci ? 0.93f : 1.0f;
        const auto burst = [&](float current) { return slow ? current / 62.5f * 8.0f * 0.5f : current; };
        EXPECT_THAT(cell("IBUF_" + standard + "_AC_VCCIO_CURRENT"), IsBits(burst(0.25f) * derating)) << standard;
        EXPECT_THAT(cell("IBUF_" + standard + "_AC_VCCAUX_CURRENT"), IsBits(burst(5.0f) * derating)) << standard;
        const float rail = pod ? 0.93f : dci || fast || slow ? 1.0f : 1.5f; // the bank's supply, for most
        EXPECT_THAT(cell("IBUF_" + standard + "_AC_VCCO_CURRENT"), IsBits(burst(8.0f) * rail)) << standard;
        EXPECT_THAT(cell("IBUF_" + standard + "_DC_VCCIO_CURRENT"), IsBits(0.5f)) << standard;
        const float direct = static_cast<float>(i + 1) + (slow ? 0.15f / 1.5f : 0.0f);
        EXPECT_THAT(cell("IBUF_" + standard + "_DC_VCCAUX_CURRENT"), IsBits(direct)) << standard;
    }
}

TEST_F(SelvTest, LowPowerMipiInputHasNoCurrentWithoutClockAndNoExtraWithoutSupply)
{
    params[Params::CLOCK_FREQ] = 0.0f;
    params[Params::VCCAUX] = 0.0f;
    calculate();
    EXPECT_THAT(params[Params::IBUF_MIPI_DPHY_LP_AC_VCCIO_CURRENT], IsBits(0.0f));
    EXPECT_THAT(params[Params::IBUF_MIPI_DPHY_LP_AC_VCCAUX_CURRENT], IsBits(0.0f));
    EXPECT_THAT(params[Params::IBUF_MIPI_DPHY_LP_AC_VCCO_CURRENT], IsBits(0.0f));
    EXPECT_THAT(params[Params::IBUF_MIPI_DPHY_LP_DC_VCCAUX_CURRENT], IsBits(25.0f)); // its row's own, 0.15 / 0 left out
    params[Params::CLOCK_FREQ] = -1000.0f;
    calculate();
    EXPECT_THAT(params[Params::IBUF_MIPI_DPHY_LP_AC_VCCO_CURRENT], IsBits(0.0f));
}

TEST_F(SelvTest, ATerminationOfZeroDividesNothing)
{
    params[Params::INPUT_TERMINATION] = 0.0f;
    calculate();
    EXPECT_THAT(params[Params::IBUF_SSTL12_VOL], IsBits(0.5f)); // V x R/R x 0.5
    for (const char* standard :
         {"SSTL12", "DIFF_SSTL12", "HSUL_12", "POD10", "DIFF_POD12", "LVDCI_15", "SSTL15_VOH80"}) {
        EXPECT_THAT(cell("IBUF_" + std::string(standard) + "_DC_VCCO_CURRENT"), IsBits(0.0f)) << standard;
        EXPECT_THAT(cell("IBUF_" + std::string(standard) + "_ONCHIP_POWER"), IsBits(0.0f)) << standard;
    }
    EXPECT_THAT(params[Params::IBUF_LVSTL_11_VOH33_ONCHIP_POWER], IsBits(0.0f));
    EXPECT_THAT(params[Params::IBUF_LVSTL06_12_VOH], IsBits(0.0f));
    EXPECT_THAT(params[Params::IBUF_SSTL15_VOH80_VOL], IsBits(0.6f * 75.0f / 75.0f));
}

TEST_F(SelvTest, InputLevelsAreGuardedFamilyByFamily)
{
    params[Params::OFFCHIP_TERMINATION] = -25.0f; // T + R is 0
    calculate();
    EXPECT_THAT(params[Params::IBUF_SSTL12_VOL], IsBits(0.0f));
    EXPECT_THAT(params[Params::IBUF_POD12_VOL], IsBits(0.0f));
    EXPECT_THAT(params[Params::IBUF_SSTL15_VOH80_VOL], IsBits(0.0f));
    EXPECT_THAT(params[Params::IBUF_SSTL15_VOH80_VOH], IsBits(0.0f));
    EXPECT_THAT(params[Params::IBUF_LVSTL_11_VOH50_VOH], IsBits(0.0f));

    params[Params::INPUT_TERMINATION] = -25.0f; // R positive, but R + T is 0
    params[Params::OFFCHIP_TERMINATION] = 25.0f;
    calculate();
    EXPECT_THAT(params[Params::IBUF_SSTL12_VOL], IsBits(0.0f));
    EXPECT_THAT(params[Params::IBUF_POD12_VOL], IsBits(0.0f));
    EXPECT_THAT(params[Params::IBUF_SSTL12_VOH], IsBits(1.0f));

    params[Params::INPUT_TERMINATION] = -62.5f; // 1.2 T + R is 0
    params[Params::OFFCHIP_TERMINATION] = 75.0f;
    calculate();
    EXPECT_THAT(params[Params::IBUF_SSTL15_VOH80_VOL], IsBits(0.0f));
    EXPECT_THAT(params[Params::IBUF_SSTL15_VOH80_VOH], IsBits(0.0f));
}

TEST_F(SelvTest, HeatWithoutDirectCurrentMakesTheBoardsPartNegative)
{
    params[Params::IO_DIRECTION] = "INPUT";
    params[Params::INPUT_IO_STANDARD] = "LVDS15";
    calculate();
    EXPECT_THAT(params[Params::IBUF_OFFCHIP_POWER], IsBits(-1.5f));
    EXPECT_THAT(params[Params::OFFCHIP_POWER], IsBits(-1.5f));
    EXPECT_LT(params[Params::IBUF_LVSTL_11_VOH33_OFFCHIP_POWER], 0.0f);
    EXPECT_LT(params[Params::OBUF_POD12_OFFCHIP_POWER], 0.0f);
}

// ---- Families of outputs ----

// Half the supply through 25 ohms against 75: 0.125 V lost at either level.
const Levels kDrivenSplit{.vol = 0.125, .voh = 0.875, .directCurrent = 1.25, .onchip = 0.625};
const Levels kDrivenPullUp{.vol = 0.25, .voh = 1, .directCurrent = 0, .onchip = 0.0625 / 25 * 750};
const double kP = 240.0 * 25 / 265; // the driver beside the boost branch
const double kBoostLow = (25.0 * 75 + 216 * 25) / (25 * 75 + 240 * 75 + 240 * 25);
const double kBoostHigh = (0.9 * kP + 75) / (kP + 75);
const double kBoostCurrent = 0.75 * (1 - 0.9 * 0.25) / (18.75 + 240) * 1000 + 0.25 * 0.1 * 1000 / (kP + 75);
double boostedDriverHeat(double highOhms)
{
    return (1 - kBoostHigh) * (1 - kBoostHigh) / highOhms * 250 + kBoostLow * kBoostLow / 25 * 750 +
           (1 - kBoostLow) * (1 - kBoostLow) / 240 * 750;
}
const Levels kDrivenBoosted{
    .vol = kBoostLow, .voh = kBoostHigh, .directCurrent = kBoostCurrent, .onchip = boostedDriverHeat(kP)};
const Levels kDrivenBoostedPair{
    .vol = kBoostLow, .voh = kBoostHigh, .directCurrent = kBoostCurrent, .onchip = boostedDriverHeat(25)};
const Levels kDrivenThird{.vol = 0, .voh = 1 / 3.0, .directCurrent = 7.5, .onchip = 4 / 9.0 / 25 * 750};
const Levels kDrivenHalf{.vol = 0, .voh = 0.5, .directCurrent = 7.5, .onchip = 0.25 / 25 * 750};
const Levels kDrivenQuarter{
    .vol = 0, .voh = 0.25, .directCurrent = 750 / (25 + 18.75), .onchip = (0.75 * 0.75 + 0.25 * 0.25) / 25 * 750};

const std::map<std::string, Levels> kOutputLevels{
    {"SSTL12", kDrivenSplit},
    {"LVDS15", {.vol = 1.047, .voh = 1.353, .directCurrent = 4, .onchip = 4 - 0.93636, .offchip = 0.306 * 0.306 * 10}},
    {"LVDS15_FIR", {.vol = 0, .voh = 0, .directCurrent = 4, .onchip = 3.6, .offchip = 2 * 100 * 2 / 1000.0}},
    {"DIFF_HSUL_12", kNothing},
    {"DIFF_HSTL_I", kDrivenSplit},
    {"DIFF_SSTL15_VOH75", kDrivenSplit},
    {"DIFF_SSTL15_VOH80", kDrivenBoostedPair},
    {"DIFF_SSTL135", kDrivenSplit},
    {"DIFF_HSTL_I_12", kDrivenSplit},
    {"DIFF_SSTL12", kDrivenSplit},
    {"DIFF_POD10", kDrivenPullUp},
    {"DIFF_POD12", kDrivenPullUp},
    {"DIFF_POD12_FIR", kDrivenPullUp},
    {"HSUL_12", kNothing},
    {"HSTL_I", kDrivenSplit},
    {"SSTL15_VOH75", kDrivenSplit},
    {"SSTL15_VOH80", kDrivenBoosted},
    {"SSTL135", kDrivenSplit},
    {"HSTL_I_12", kDrivenSplit},
    {"POD10", kDrivenPullUp},
    {"POD12", kDrivenPullUp},
    {"POD12_FIR", kDrivenPullUp},
    {"HSLVDCI_15", kNothing},
    {"LVDCI_15", kNothing},
    {"LVCMOS15_2", kNothing},
    {"LVCMOS15_4", kNothing},
    {"LVCMOS15_6", kNothing},
    {"LVCMOS15_8", kNothing},
    {"LVCMOS15_12", kNothing},
    {"LVCMOS12_2", kNothing},
    {"LVCMOS12_4", kNothing},
    {"LVCMOS12_6", kNothing},
    {"LVCMOS12_8", kNothing},
    {"MIPI_DPHY_DCI_HS", {.vol = 0, .voh = 0, .directCurrent = 4, .onchip = 3.6, .offchip = 0.4}},
    {"MIPI_DPHY_LP", {.vol = 0, .voh = 0, .directCurrent = 4, .onchip = 0, .offchip = 0}},
    {"LVSTL06_12", kDrivenQuarter},
    {"DIFF_LVSTL06_12", kDrivenQuarter},
    {"LVSTL_11_VOH33", kDrivenThird},
    {"DIFF_LVSTL_11_VOH33", kDrivenThird},
    {"LVSTL_11_VOH50", kDrivenHalf},
    {"DIFF_LVSTL_11_VOH50", kDrivenHalf},
};

TEST_F(SelvTest, EveryOutputHasItsFamilysLevelsAndHeat)
{
    calculate();
    ASSERT_EQ(kOutputLevels.size(), 41u);
    for (const auto& [standard, levels] : kOutputLevels) {
        expectClose(cell("OBUF_" + standard + "_VOL"), levels.vol, standard + " VOL");
        expectClose(cell("OBUF_" + standard + "_VOH"), levels.voh, standard + " VOH");
        expectClose(cell("OBUF_" + standard + "_DC_VCCO_CURRENT"), levels.directCurrent, standard + " current");
        expectClose(cell("OBUF_" + standard + "_ONCHIP_POWER"), levels.onchip, standard + " on chip");
        expectClose(cell("OBUF_" + standard + "_OFFCHIP_POWER"), levels.offchip, standard + " off chip");
        EXPECT_THAT(cell("OBUF_" + standard + "_PW"), IsBits(0.25f)) << standard;
    }
}

TEST_F(SelvTest, TheBoostedPairAndItsSingleEndedFormHeatTheDriverDifferently)
{
    calculate();
    EXPECT_NE(params[Params::OBUF_SSTL15_VOH80_ONCHIP_POWER], params[Params::OBUF_DIFF_SSTL15_VOH80_ONCHIP_POWER]);
    EXPECT_THAT(params[Params::OBUF_SSTL15_VOH80_VOH], IsBits(params[Params::OBUF_DIFF_SSTL15_VOH80_VOH]));
}

// Which of the families of toggling and predriver currents an output belongs to.
bool isLvstl(const std::string& standard)
{
    return standard.find("LVSTL") != std::string::npos;
}

bool hasTabulatedPredriver(const std::string& standard)
{
    return standard.starts_with("LVDS") || standard.starts_with("LVCMOS") || standard.starts_with("MIPI");
}

bool isInSlowPackage(const std::string& standard)
{
    return standard == "HSUL_12" || standard == "LVDCI_15" || standard == "HSLVDCI_15" ||
           standard.starts_with("LVCMOS") || standard == "MIPI_DPHY_LP";
}

TEST_F(SelvTest, OutputCurrentsFollowTheirFamilies)
{
    calculate();
    int scaled = 0;
    for (std::size_t i = 0; i < kOutputs.size(); ++i) {
        const std::string& standard = kOutputs[i];
        const bool mipi = standard.starts_with("MIPI");
        // Clamped currents come out as the smallest normal float, not as 0.
        EXPECT_THAT(cell("OBUF_" + standard + "_DC_VCCIO_CURRENT"), IsBits(mipi ? -0.5f : FLT_MIN)) << standard;
        EXPECT_THAT(cell("OBUF_" + standard + "_AC_VCCIO_CURRENT"), IsBits(mipi ? -0.25f : FLT_MIN)) << standard;
        EXPECT_THAT(cell("OBUF_" + standard + "_DC_VCCAUX_CURRENT"), IsBits(static_cast<float>(i + 1))) << standard;
        EXPECT_THAT(cell("OBUF_" + standard + "_AC_VCCAUX_CURRENT"), IsBits(5.0f)) << standard;

        const bool asTabulated = mipi || standard.starts_with("LVDS");
        const float predriverDirect = isLvstl(standard) ? 0.0f : asTabulated ? -0.75f : FLT_MIN;
        EXPECT_THAT(cell("OBUF_" + standard + "_DC_VCCO_PREDRV_CURRENT"), IsBits(predriverDirect)) << standard;
        const bool byImpedance = !isLvstl(standard) && !hasTabulatedPredriver(standard);
        scaled += byImpedance;
        EXPECT_THAT(cell("OBUF_" + standard + "_AC_VCCO_PREDRV_CURRENT"), IsBits(byImpedance ? 3.2f : 2.0f))
            << standard; // 2 x 40 / 25

        float driver = isInSlowPackage(standard) ? 5.0f : 4.0f; // (2 + 1.5 + package) x 8 / (6 + 2)
        if (standard == "POD12")
            driver = 8.0f; // x RDRV / 25, alone of the PODs
        else if (standard == "LVDS15")
            driver = 8.0f; // as tabulated
        else if (standard == "LVDS15_FIR")
            driver = 8.0f / 1.5f; // over the bank's supply
        EXPECT_THAT(cell("OBUF_" + standard + "_AC_VCCO_CURRENT"), IsBits(driver)) << standard;
    }
    EXPECT_EQ(scaled, 22);
}

TEST_F(SelvTest, ADriverWithoutImpedance)
{
    params[Params::OUTPUT_IMPEDANCE] = 0.0f;
    calculate();
    for (const std::string& standard : kOutputs) {
        const bool tabulated = hasTabulatedPredriver(standard) || standard.find("LVSTL_11") != std::string::npos;
        EXPECT_THAT(cell("OBUF_" + standard + "_AC_VCCO_PREDRV_CURRENT"), IsBits(tabulated ? 2.0f : 0.0f)) << standard;
        const bool stops = isLvstl(standard) || standard == "POD12";
        EXPECT_EQ(cell("OBUF_" + standard + "_AC_VCCO_CURRENT") == 0.0f, stops) << standard;
    }
    EXPECT_THAT(params[Params::OBUF_SSTL12_ONCHIP_POWER], IsBits(0.0f));
    EXPECT_THAT(params[Params::OBUF_SSTL15_VOH80_ONCHIP_POWER], IsBits(0.0f));
    EXPECT_THAT(params[Params::OBUF_LVSTL06_12_ONCHIP_POWER], IsBits(0.0f));
    EXPECT_THAT(params[Params::OBUF_SSTL12_VOL], IsBits(0.0f));
    EXPECT_THAT(params[Params::OBUF_SSTL12_VOH], IsBits(1.0f));
}

TEST_F(SelvTest, TheImpedanceOfLvstl06CancelsButForItsRounding)
{
    params[Params::OUTPUT_IMPEDANCE] = 49.0f;
    params[Params::OUTPUT_LOAD] = 0.1f;
    calculate();
    const float byLoad = (2.0f + 0.1f + 0.5f) * 8.0f / (6.0f + 2.0f);
    EXPECT_THAT(params[Params::OBUF_LVSTL06_12_AC_VCCO_CURRENT], IsBits(byLoad * 49.0f / 49.0f));
    EXPECT_THAT(params[Params::OBUF_LVSTL_11_VOH33_AC_VCCO_CURRENT], IsBits(byLoad));
}

TEST_F(SelvTest, DriverAndBoardThatCancelGiveNoLevels)
{
    params[Params::OUTPUT_IMPEDANCE] = 25.0f;
    params[Params::OFFCHIP_TERMINATION] = -25.0f;
    calculate();
    for (const char* standard : {"SSTL12", "POD12", "SSTL15_VOH80"})
        EXPECT_THAT(cell("OBUF_" + std::string(standard) + "_VOL"), IsBits(0.0f)) << standard;
    EXPECT_THAT(params[Params::OBUF_SSTL15_VOH80_VOH], IsBits(0.0f));
    for (const char* standard : {"SSTL12", "SSTL15_VOH80", "LVSTL_11_VOH33", "LVSTL06_12"})
        EXPECT_THAT(cell("OBUF_" + std::string(standard) + "_DC_VCCO_CURRENT"), IsBits(0.0f)) << standard;
}

TEST_F(SelvTest, ABoostBranchThatCancelsTheDriverHeatsNothingAtTheHighLevel)
{
    params[Params::OUTPUT_IMPEDANCE] = -240.0f;
    params[Params::OFFCHIP_TERMINATION] = 500.0f;
    calculate();
    EXPECT_THAT(params[Params::OBUF_SSTL15_VOH80_VOH], IsBits(1.0f)); // P is 0: 0.9 x 0 + V x R/R
    EXPECT_THAT(params[Params::OBUF_SSTL15_VOH80_ONCHIP_POWER], IsBits(0.0f));
}

TEST_F(SelvTest, ABankWithoutSupply)
{
    params[Params::VCCO15] = 0.0f;
    calculate();
    EXPECT_THAT(params[Params::OBUF_LVDS15_AC_VCCO_CURRENT], IsBits(0.0f));
    EXPECT_THAT(params[Params::OBUF_LVDS15_FIR_AC_VCCO_CURRENT], IsBits(0.0f));
    EXPECT_THAT(params[Params::IBUF_MIPI_DPHY_LP_ONCHIP_POWER], IsBits(0.0f));
    EXPECT_THAT(params[Params::IBUF_SSTL12_AC_VCCO_CURRENT], IsBits(0.0f));
    EXPECT_THAT(params[Params::IBUF_POD12_AC_VCCO_CURRENT], IsBits(8.0f * 0.93f));
    EXPECT_THAT(params[Params::OBUF_SSTL12_VOL], IsBits(0.125f)); // from the standard's own supply
}

TEST_F(SelvTest, ALoadThatCancelsThePadGivesNoCurrent)
{
    std::string entries(kOutputEntries);
    entries.replace(entries.find("OBUF_LOAD = 6.0"), 15, "OBUF_LOAD = -2.0");
    load(tables(kInputEntries, entries));
    calculate();
    EXPECT_THAT(params[Params::OBUF_SSTL12_AC_VCCO_CURRENT], IsBits(0.0f));
}

// ---- Selection ----

TEST_F(SelvTest, EveryNameSelectsItsOwnCells)
{
    params[Params::VCCAUX] = 2.0f;
    params[Params::IBUF_DISABLE] = 0.0f;
    params[Params::IO_DIRECTION] = "BIDI";
    for (std::size_t i = 0; i < kInputs.size(); ++i) {
        params[Params::INPUT_IO_STANDARD] = kInputs[i];
        calculate();
        const float direct = cell("IBUF_" + kInputs[i] + "_DC_VCCAUX_CURRENT");
        EXPECT_NEAR(direct, static_cast<float>(i + 1), 0.08) << kInputs[i];
        EXPECT_THAT(params[Params::IBUF_DC_VCCAUX_POWER], IsBits(direct * 2.0f)) << kInputs[i];
    }
    for (std::size_t i = 0; i < kOutputs.size(); ++i) {
        params[Params::OUTPUT_IO_STANDARD] = kOutputs[i];
        calculate();
        // The current as it is: no supply, no frequency, no enable, one line for a pair.
        EXPECT_THAT(params[Params::OBUF_DC_VCCAUX_POWER], IsBits(static_cast<float>(i + 1))) << kOutputs[i];
    }
}

TEST_F(SelvTest, ANameOnNoListSelectsNothing)
{
    params[Params::IO_DIRECTION] = "BIDI";
    params[Params::INPUT_IO_STANDARD] = "SSTL12";
    params[Params::OUTPUT_IO_STANDARD] = "sstl12"; // names are compared exactly
    params[Params::OUTPUT_ENABLE] = 1.0f;
    calculate();
    for (const char* name : {"AC_VCCAUX", "AC_VCCIO", "AC_VCCO", "AC_VCCO_PREDRV", "DC_VCCAUX", "DC_VCCIO", "DC_VCCO",
                             "DC_VCCO_PREDRV", "OFFCHIP"})
        EXPECT_THAT(cell("OBUF_" + std::string(name) + "_POWER"), IsBits(0.0f)) << name;
    EXPECT_THAT(params[Params::IBUF_DC_VCCO_POWER], IsBits(10.625f));
    EXPECT_THAT(params[Params::VCCO_POWER], IsBits(10.625f + params[Params::IBUF_AC_VCCO_POWER]));

    params[Params::INPUT_IO_STANDARD] = "SSTL12 ";
    calculate();
    EXPECT_THAT(params[Params::VCCO_POWER], IsBits(0.0f));
}

TEST_F(SelvTest, AnOutputHasNoInputPowerButAllInputCells)
{
    params[Params::INPUT_IO_STANDARD] = "SSTL12";
    calculate();
    for (const char* name : {"AC_VCCAUX", "AC_VCCIO", "AC_VCCO", "DC_VCCAUX", "DC_VCCIO", "DC_VCCO", "OFFCHIP"})
        EXPECT_THAT(cell("IBUF_" + std::string(name) + "_POWER"), IsBits(0.0f)) << name;
    EXPECT_THAT(params[Params::IBUF_SSTL12_ONCHIP_POWER], IsBits(10.625f));
}

TEST_F(SelvTest, AMissingRowSpoilsItsOwnCellsAlone)
{
    std::string text = tables(kInputEntries, kOutputEntries);
    const std::size_t row = text.find("POD10 : { VCCAUX_DC", text.find("LVDS15_FIR"));
    text.replace(row, 5, "GONE0");
    load(text);
    calculate();
    EXPECT_THAT(params[Params::OBUF_DIFF_POD10_DC_VCCAUX_CURRENT], IsBits(zelm::unsetFloat));
    EXPECT_TRUE(std::isinf(params[Params::OBUF_DIFF_POD10_AC_VCCO_CURRENT]));
    EXPECT_THAT(params[Params::OBUF_POD10_DC_VCCAUX_CURRENT], IsBits(20.0f));
    EXPECT_THAT(params[Params::OBUF_DC_VCCAUX_POWER], IsBits(1.0f)); // of SSTL12
}

// ---- Cells of the group ----

TEST_F(SelvTest, DataRatesSetTheFrequency)
{
    const auto freq = [&](const char* rate, float toggleRate) {
        params[Params::DATA_RATE] = rate;
        params[Params::TOGGLE_RATE] = toggleRate;
        calculate();
        return params[Params::IOB_FREQ];
    };
    EXPECT_THAT(freq("Clock", 0.125f), IsBits(1000.0f));
    EXPECT_THAT(freq("Async", 0.125f), IsBits(1000.0f));
    EXPECT_THAT(freq("DDR", 1.0f), IsBits(1000.0f));
    EXPECT_THAT(freq("SDR", 1.0f), IsBits(500.0f));
    EXPECT_THAT(freq("DDR", 0.25f), IsBits(250.0f));
    EXPECT_THAT(freq("QDR", 0.25f), IsBits(125.0f)); // as single
}

TEST_F(SelvTest, DirectionsCountInputsAndOutputs)
{
    const auto counts = [&](const char* direction) {
        params[Params::IO_DIRECTION] = direction;
        calculate();
        return std::pair(params[Params::NUM_INPUTS], params[Params::NUM_OUTPUTS]);
    };
    EXPECT_EQ(counts("INPUT"), std::pair(1.0f, 0.0f));
    EXPECT_EQ(counts("OUTPUT"), std::pair(0.0f, 1.0f));
    EXPECT_EQ(counts("BIDI"), std::pair(1.0f, 1.0f));
    EXPECT_EQ(counts("BIDI_INPUT"), std::pair(1.0f, 0.0f));
    EXPECT_EQ(counts("BIDI_OUTPUT"), std::pair(0.0f, 1.0f));
    EXPECT_EQ(counts("SIDEWAYS"), std::pair(1.0f, 1.0f));
}

TEST_F(SelvTest, AMipiReceiverStaysPowered)
{
    params[Params::INPUT_IO_STANDARD] = "MIPI_DPHY_LP";
    params[Params::IBUF_DISABLE] = 1.0f;
    calculate();
    EXPECT_THAT(params[Params::IBUF_ENABLE_FACTOR], IsBits(1.0f - 0.3f));
    params[Params::IBUF_DISABLE] = 0.125f;
    calculate();
    EXPECT_THAT(params[Params::IBUF_ENABLE_FACTOR], IsBits(0.875f));
    params[Params::IBUF_DISABLE] = zelm::unsetFloat; // the default, too, follows the standard
    calculate();
    EXPECT_THAT(params[Params::IBUF_DISABLE], IsBits(0.3f));
    params[Params::INPUT_IO_STANDARD] = "LVDS15";
    params[Params::IBUF_DISABLE] = 1.0f;
    calculate();
    EXPECT_THAT(params[Params::IBUF_ENABLE_FACTOR], IsBits(0.0f));
}

TEST_F(SelvTest, InputMultipliers)
{
    params[Params::IBUF_DISABLE] = 0.75f;
    params[Params::TERM_DISABLE] = 0.375f;
    params[Params::VCC_IO] = 0.75f; // over 0.5 V of the characterisation
    params[Params::VCCAUX] = 2.0f;
    params[Params::VCCO15] = 1.25f;
    params[Params::CLOCK_FREQ] = 64.0f; // x 0.125 x 0.5 = 4 MHz
    for (const char* direction : {"BIDI", "BIDI_INPUT", "INPUT", "OUTPUT", "BIDI_OUTPUT", "SIDEWAYS"}) {
        params[Params::IO_DIRECTION] = direction;
        calculate();
        const std::string_view kind = direction;
        const bool receives = kind == "BIDI" || kind == "BIDI_INPUT" || kind == "INPUT";
        const float e = receives ? 0.25f : 1.0f;
        EXPECT_THAT(params[Params::POWER_SCALING], IsBits(1.5f));
        EXPECT_THAT(params[Params::IBUF_DC_VCCIO_MULTIPLIER], IsBits(e * 1.125f)) << direction;
        EXPECT_THAT(params[Params::IBUF_AC_VCCIO_MULTIPLIER], IsBits(e * 4.5f)) << direction;
        EXPECT_THAT(params[Params::IBUF_DC_VCCAUX_MULTIPLIER], IsBits(e * 2.0f)) << direction;
        EXPECT_THAT(params[Params::IBUF_AC_VCCAUX_MULTIPLIER], IsBits(e * 8.0f)) << direction;
        EXPECT_THAT(params[Params::IBUF_AC_VCCO_MULTIPLIER], IsBits(e * 5.0f)) << direction;
        EXPECT_THAT(params[Params::IBUF_DC_VCCO_MULTIPLIER], IsBits(receives ? 0.625f : 1.0f)) << direction;
        EXPECT_THAT(params[Params::IBUF_OFFCHIP_MULTIPLIER], IsBits(receives ? 0.625f : 1.0f)) << direction;
    }
}

TEST_F(SelvTest, OutputMultipliers)
{
    params[Params::OUTPUT_ENABLE] = 0.75f;
    params[Params::VCC_IO] = 0.75f;
    params[Params::VCCO15] = 1.25f;
    params[Params::CLOCK_FREQ] = 64.0f; // 4 MHz
    struct Case {
        const char* standard;
        float enable, toggles, lines;
    };
    for (const Case& c : {Case{"SSTL12", 0.75f, 3.0f, 1.0f}, Case{"DIFF_SSTL12", 0.75f, 3.0f, 2.0f},
                          Case{"MIPI_DPHY_DCI_HS", 0.75f, 3.0f, 1.0f},
                          Case{"MIPI_DPHY_LP", 0.25f, 1.0f, 1.0f}, // reversed, at 8 Mb/s / 2
                          Case{"DIFF", 0.75f, 3.0f, 2.0f}, Case{"DPHY_LP", 0.25f, 1.0f, 1.0f}}) {
        params[Params::OUTPUT_IO_STANDARD] = c.standard;
        calculate();
        EXPECT_THAT(params[Params::OBUF_DC_VCCIO_MULTIPLIER], IsBits(c.enable * c.lines * 1.125f)) << c.standard;
        EXPECT_THAT(params[Params::OBUF_AC_VCCIO_MULTIPLIER], IsBits(c.toggles * c.lines * 1.125f)) << c.standard;
        EXPECT_THAT(params[Params::OBUF_DC_VCCO_PREDRV_MULTIPLIER], IsBits(c.enable * c.lines * 1.25f)) << c.standard;
        EXPECT_THAT(params[Params::OBUF_AC_VCCO_PREDRV_MULTIPLIER], IsBits(c.toggles * c.lines * 1.25f)) << c.standard;
        EXPECT_THAT(params[Params::OBUF_DC_VCCO_MULTIPLIER], IsBits(c.enable * c.lines)) << c.standard;
        EXPECT_THAT(params[Params::OBUF_AC_VCCO_MULTIPLIER], IsBits(c.toggles * c.lines * 1.25f)) << c.standard;
        EXPECT_THAT(params[Params::OBUF_OFFCHIP_MULTIPLIER], IsBits(c.enable * c.lines)) << c.standard;
    }
}

TEST_F(SelvTest, ALowPowerMipiOutputWorksWhileTheFastOneIsOff)
{
    params[Params::OUTPUT_IO_STANDARD] = "MIPI_DPHY_LP";
    params[Params::OUTPUT_ENABLE] = 0.0f;
    params[Params::VCC_IO] = 0.5f;
    calculate();
    EXPECT_THAT(params[Params::OBUF_DC_VCCIO_POWER], IsBits(-0.5f * 0.5f));
    EXPECT_THAT(params[Params::OBUF_AC_VCCO_POWER], IsBits(5.0f * (8.0f * 0.5f * 1.5f)));
    const float before = params[Params::OBUF_AC_VCCO_POWER];
    params[Params::CLOCK_FREQ] = 1.0f;
    calculate();
    EXPECT_THAT(params[Params::OBUF_AC_VCCO_POWER], IsBits(before));
    params[Params::OUTPUT_ENABLE] = 1.0f;
    calculate();
    EXPECT_THAT(params[Params::OBUF_AC_VCCO_POWER], IsBits(0.0f));
}

TEST_F(SelvTest, ASimulatedVoltageOfZeroScalesToNothing)
{
    std::string text = tables(kInputEntries, kOutputEntries);
    text.replace(text.find("SIM_VOLTAGE = 0.5"), 17, "SIM_VOLTAGE = 0.0");
    load(text);
    calculate();
    EXPECT_THAT(params[Params::POWER_SCALING], IsBits(0.0f));
    EXPECT_THAT(params[Params::VCCIO_POWER], IsBits(0.0f));
}

TEST_F(SelvTest, AnOutputsPower)
{
    params[Params::OUTPUT_ENABLE] = 0.5f;
    params[Params::OUTPUT_IO_STANDARD] = "DIFF_SSTL12";
    params[Params::CLOCK_FREQ] = 64.0f; // 4 MHz
    calculate();
    EXPECT_THAT(params[Params::OBUF_AC_VCCO_POWER], IsBits(4.0f * (4.0f * 0.5f * 2.0f * 1.5f)));
    EXPECT_THAT(params[Params::OBUF_AC_VCCO_PREDRV_POWER], IsBits(3.2f * (4.0f * 0.5f * 1.5f * 2.0f)));
    EXPECT_THAT(params[Params::OBUF_DC_VCCO_POWER], IsBits(0.625f)); // the heat on chip, of two lines half of the time
    EXPECT_THAT(params[Params::OBUF_OFFCHIP_POWER], IsBits(0.625f));
    EXPECT_THAT(params[Params::OBUF_AC_VCCAUX_POWER], IsBits(5.0f)); // unscaled
    EXPECT_THAT(params[Params::VCCAUX_POWER], IsBits(10.0f + 5.0f)); // tenth on the list
    // The predriver's direct current is clamped to next to nothing.
    EXPECT_THAT(params[Params::VCCO_POWER], IsBits(0.625f + 24.0f + 3.2f * 6.0f));
    EXPECT_THAT(params[Params::OFFCHIP_POWER], IsBits(0.625f));
}

TEST_F(SelvTest, AnInputsPower)
{
    params[Params::IO_DIRECTION] = "INPUT";
    params[Params::INPUT_IO_STANDARD] = "SSTL12";
    params[Params::IBUF_DISABLE] = 0.5f;
    params[Params::TERM_DISABLE] = 0.75f;
    params[Params::CLOCK_FREQ] = 64.0f; // 4 MHz
    params[Params::VCC_IO] = 1.0f;      // twice the characterised voltage
    calculate();
    EXPECT_THAT(params[Params::IBUF_AC_VCCO_POWER], IsBits(8.0f * 1.5f * (0.5f * 4.0f * 1.5f))); // the rail twice
    EXPECT_THAT(params[Params::IBUF_DC_VCCO_POWER], IsBits(10.625f * 0.25f)); // by the termination's enable
    EXPECT_THAT(params[Params::IBUF_OFFCHIP_POWER], IsBits(0.625f * 0.25f));
    EXPECT_THAT(params[Params::IBUF_DC_VCCIO_POWER], IsBits(0.5f * (0.5f * 2.0f)));
    EXPECT_THAT(params[Params::IBUF_AC_VCCIO_POWER], IsBits(0.25f * (0.5f * 4.0f * 2.0f)));
    EXPECT_THAT(params[Params::VCCIO_POWER], IsBits(0.5f + 1.0f));
    EXPECT_THAT(params[Params::VCCAUX_POWER], IsBits(17.0f * 0.75f + 5.0f * 3.0f)); // 17th on the list
    EXPECT_THAT(params[Params::VCCO_POWER], IsBits(10.625f * 0.25f + 36.0f));
    EXPECT_THAT(params[Params::OFFCHIP_POWER], IsBits(0.625f * 0.25f));
}

// ---- The shipped data ----

TEST(Selv, ShippedDataGivesBelievablePower)
{
    const DataDirVariable variable(shippedDataDirectory());
    Data::getMutableGlobal().reset();
    const Model& model = Model::getGlobal();
    const auto output = [&](const char* standard) {
        Params params;
        params[Params::OUTPUT_IO_STANDARD] = standard;
        params[Params::OUTPUT_ENABLE] = 1.0f;
        model.calculate(params);
        return params;
    };
    const Params sstl = output("SSTL12"); // some milliwatts into 60 ohms, half of them on the board
    EXPECT_GT(sstl[Params::OBUF_DC_VCCO_POWER], 0.5f);
    EXPECT_LT(sstl[Params::OBUF_DC_VCCO_POWER], 5.0f);
    EXPECT_GT(sstl[Params::VCCO_POWER], sstl[Params::OBUF_DC_VCCO_POWER]);
    EXPECT_LT(sstl[Params::VCCO_POWER], 8.0f);
    EXPECT_GT(sstl[Params::VCCIO_POWER], 0.01f);
    EXPECT_LT(sstl[Params::VCCIO_POWER], 0.3f);
    const Params lvds = output("LVDS15"); // 0.306 V across 100 ohms is 0.94 mW, the rest of 5.9 mA stays on chip
    EXPECT_NEAR(lvds[Params::OFFCHIP_POWER], 0.936, 0.001);
    EXPECT_NEAR(lvds[Params::OBUF_DC_VCCO_POWER], 7.9, 0.3);
    const Params cmos = output("LVCMOS15_8"); // charge alone
    EXPECT_LT(cmos[Params::VCCO_POWER], 2.0f);
    EXPECT_GT(cmos[Params::VCCO_POWER], 0.5f);

    Params input;
    input[Params::IO_DIRECTION] = "INPUT";
    input[Params::INPUT_IO_STANDARD] = "SSTL12"; // a termination of 40 ohms and a reference receiver
    model.calculate(input);
    EXPECT_GT(input[Params::VCCAUX_POWER], 0.5f);
    EXPECT_LT(input[Params::VCCAUX_POWER], 2.0f);
    EXPECT_GT(input[Params::VCCO_POWER], 1.0f);
    EXPECT_LT(input[Params::VCCO_POWER], 20.0f);
}

TEST(Selv, ShippedDataHasEveryKeyOfEveryStandard)
{
    const DataDirVariable variable(shippedDataDirectory());
    Data::getMutableGlobal().reset();
    Params params;
    Model::getGlobal().calculate(params);
    std::vector<std::string> names;
    Params::getFloatIntermediateCalculationNames(names);
    for (const std::string& name : names)
        EXPECT_LT(std::fabs(params[Params::string_to_float_enum(name)]), 1e3f) << name;
    for (const std::string& standard : kInputs)
        EXPECT_NE(Data::getGlobal().getIoList("INPUT", standard), zelm::unsetString) << standard;
    for (const std::string& standard : kOutputs)
        EXPECT_NE(Data::getGlobal().getIoList("OUTPUT", standard), zelm::unsetString) << standard;
}

} // namespace zelm::test::selvTest

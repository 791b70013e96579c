#include "dsp/ZelmOrvaneDspLegacyModel.h"

#include "DspTables.h"

namespace zelm::test::dspLegacyTest {

using Model = ZelmOrvaneDspLegacyModel;
using Params = ZelmOrvaneDspLegacyParams;
using Data = ZelmOrvaneDspLegacyData;

const std::vector<std::string>& kModes = kDspInt24Modes;

const std::vector<DspFamilyRow> kRows{
#define IC_FLOAT_FAMILY(cell, function, unit, meaning, member, metric) {#cell, #member, #metric},
#include "dsp/ZelmOrvaneDspLegacyCells.def"
};

std::vector<std::string> partsWithXor()
{
    std::vector<std::string> parts = kDspParts;
    parts.emplace_back("WIDE_XOR");
    return parts;
}

class DspLegacyTest : public DspSliceTest<Model> {
protected:
    DspLegacyTest()
        : DspSliceTest({.family = "LEGACY_INT24",
                        .usage = "MULT_NO_MREG_NO_PREADD_NO_ADREG_NO",
                        .mode = "MULT_ALU_MREG",
                        .topRow = "WIDE_XOR_CURRENT = 8.0; "})
    {
    }
};

TEST(DspLegacy, FamiliesAreModesTimesComponents)
{
    expectDspFamilies(kRows, "LEGACY_INT24", kModes, partsWithXor(),
                      {"componentCurrent", "dynamicCurrent", "offCurrent", "toggleRate"});
    EXPECT_EQ(
        std::count_if(kRows.begin(), kRows.end(), [](const auto& row) { return row.cell.starts_with("LEGACY_"); }),
        133);
}

TEST_F(DspLegacyTest, AnUntouchedBlockContributesNothing)
{
    calculate();
    EXPECT_EQ(params[Params::NUM_DSP], 0);
    std::vector<std::string> names;
    Params::getFloatUserInputNames(names);
    for (const std::string& name : names)
        EXPECT_THAT(cell(name), IsBits(name == "VCCINT" ? 0.72f : 0.0f)) << name;
    EXPECT_THAT(cell("DYNAMIC_VCCINT_CURRENT"), IsBits(0.0f));
    EXPECT_THAT(cell("DYNAMIC_VCCINT_POWER"), IsBits(0.0f));
    set("CLOCK_FREQ", 500.0f); // the rest draws current, but no slice is counted
    EXPECT_GT(after("TOTAL_COMPONENT_ADJ_CURRENT"), 0.0f);
    EXPECT_THAT(cell("DYNAMIC_VCCINT_CURRENT"), IsBits(0.0f));
}

TEST_F(DspLegacyTest, AGlobalRateReplacesAllInEveryMode)
{
    set("GLOBAL_TR", 1.0f);
    expectGlobalRate(kModes, partsWithXor(), 1.0f);
}

TEST_F(DspLegacyTest, TheWideXorIsOutsideClockAndVoltage)
{
    set("USE_GLOBAL_TR", "YES");
    set("GLOBAL_TR", 0.25f);
    set("VCCINT", 0.4f);
    EXPECT_THAT(after("WIDE_XOR_CURRENT"), IsBits(0.0f)); // not in use, though the table has a row
    set("WIDEXOR_USED", "YES");
    EXPECT_THAT(after("WIDE_XOR_CURRENT"), IsBits(2.0f)); // 0.25 x 8, at no clock and half the voltage
    set("CLOCK_FREQ", 500.0f);
    EXPECT_THAT(after("WIDE_XOR_CURRENT"), IsBits(2.0f));
    EXPECT_EQ(params[Params::DSP_USAGE], "MULT_NO_MREG_NO_PREADD_NO_ADREG_NO"); // no part of the usage
}

TEST_F(DspLegacyTest, TheWideXorIsAddedToTheSliceAndNotToTheMeanRate)
{
    set("USE_GLOBAL_TR", "YES");
    set("GLOBAL_TR", 1.0f);
    set("VCCINT", 0.4f);
    set("CLOCK_FREQ", 100.0f);
    set("WIDEXOR_USED", "YES");
    params[Params::NUM_DSP] = 3;
    EXPECT_THAT(after("DYNAMIC_VCCINT_CURRENT"), IsBits(738.09375f)); // (17 x 12.53125 + 8 + 25) x 3
    EXPECT_THAT(cell("DYNAMIC_VCCINT_POWER"), IsBits(738.09375f * 0.4f));
    EXPECT_THAT(after("AGGREGATED_TR"), IsBits(1.03125f)); // (15 + 1/2 + 1) x 0.25 / 4
}

TEST_F(DspLegacyTest, TheWideXorComesAfterTheCascadeAndBeforeTheRest)
{
    tables.simulated = "1.0";
    tables.off = tables.dynamic = "0.0";
    tables.componentSum = "1.0";
    tables.totalMeasured = "-33554431.0";
    tables.topRow = "WIDE_XOR_CURRENT = 3.0; ";
    tables.parts = {{"CASC_DELAY", "33554432.0"}};
    load();
    set("USE_GLOBAL_TR", "YES");
    set("GLOBAL_TR", 1.0f);
    set("VCCINT", 0.8f);
    set("CLOCK_FREQ", 1.0f);
    set("WIDEXOR_USED", "YES");
    params[Params::NUM_DSP] = 1;
    // 2^25 + 3 rounds to 2^25 + 4; less 2^25. Any other order gives 3, or 0.
    EXPECT_THAT(after("DYNAMIC_VCCINT_CURRENT"), IsBits(4.0f));
}

TEST_F(DspLegacyTest, InputAIsWidenedByThirtyOverTwentySeven)
{
    set("A_TR", 0.25f);
    set("B_TR", 0.125f);
    EXPECT_THAT(after("AB_DATA_TR"), IsBits((0.25f * 30.0f / 27.0f + 0.125f) / 2.0f)); // single
    set("OPMODE_USAGE", "DYNAMIC");
    EXPECT_THAT(after("AB_DATA_TR"), IsBits(0.1875f));
    useMode("ALU_ONLY");
    set("OPMODE_USAGE", "CONST");
    EXPECT_THAT(after("AB_DATA_TR"), IsBits(0.1875f));
}

TEST_F(DspLegacyTest, OnlyTheControlsKnowTheAluAlone)
{
    set("ALU_CTRL_CARRYIN_TR", 0.125f);
    EXPECT_NEAR(after("ALUREG_TR"), 0.125 * 17 / 6, 1e-7);
    EXPECT_NEAR(cell("OPTINV_TR"), 0.125 * 17 / 6, 1e-7);
    useMode("ALU_ONLY");
    EXPECT_THAT(after("ALUREG_TR"), IsBits(0.125f));
    EXPECT_NEAR(cell("OPTINV_TR"), 0.125 * 17 / 6, 1e-7); // scaled here too
    set("OPMODE_USAGE", "DYNAMIC");
    EXPECT_THAT(after("ALUREG_TR"), IsBits(0.125f));
    EXPECT_NEAR(cell("OPTINV_TR"), 0.125 * 17 / 15, 1e-7);
    set("ALU_CTRL_CARRYIN_TR", 0.75f);
    EXPECT_THAT(after("ALUREG_TR"), IsBits(0.5f)); // capped
    EXPECT_THAT(cell("OPTINV_TR"), IsBits(0.5f));
}

TEST_F(DspLegacyTest, ThePreAdderIsUncappedWhereNotUsed)
{
    setAll(0.75f);
    set("OPMODE_USAGE", "DYNAMIC");
    for (const char* mode : {"MULT_ALU_MREG", "MULT_ALU_NOMREG", "ALU_ONLY"}) {
        useMode(mode);
        EXPECT_THAT(after("PREADD_TR"), IsBits(0.75f)) << mode;
        EXPECT_THAT(cell("PREADD_DATA_TR"), IsBits(0.5f)) << mode;
        EXPECT_THAT(cell("MULT_TR"), IsBits(0.5f)) << mode;
    }
    useMode("PREADD_MULT_ALU");
    EXPECT_THAT(after("PREADD_TR"), IsBits(0.5f));
}

// A 0.25, B 0.125, C 0.0625, D 0.5, INMODE 0.25, CARRY 0.125, output 0.375; A and B average 0.1875.
TEST_F(DspLegacyTest, RatesFlowThroughTheNetwork)
{
    set("A_TR", 0.25f);
    set("B_TR", 0.125f);
    set("C_TR", 0.0625f);
    set("D_TR", 0.5f);
    set("INMODE_NEGATE_TR", 0.25f);
    set("ALU_CTRL_CARRYIN_TR", 0.125f);
    set("P_OUTPUT_TR", 0.375f);
    set("OPMODE_USAGE", "DYNAMIC");
    calculate();
    const double path = ((0.1875 * 27 + 1.25) / 27 + 0.1875) / 2; // 5 bits of controls
    EXPECT_NEAR(cell("PREADD_DATA_TR"), path, 1e-7);
    const double mult = ((0.1875 + 0.25 + 0.125 + 0.25) / 4 * 51 + 0.25) / 51;
    EXPECT_NEAR(cell("MULT_TR"), mult, 1e-7);
    EXPECT_NEAR(cell("ALUMUX_TR"), ((0.1875 + 0.0625 + mult + 0.375) / 4 * 48 + 9 * 0.125) / 48, 1e-7);
    EXPECT_NEAR(cell("FP_ADD_TR"), 0.625 / 3, 1e-7);
    EXPECT_NEAR(cell("CASC_DELAY_TR"), (0.1875 + path) / 2, 1e-7);
    EXPECT_THAT(cell("WIDE_XOR_TR"), IsBits(0.125f));

    set("OPMODE_USAGE", "CONST");
    calculate();
    const double ab = (0.25 * 30 / 27 + 0.125) / 2;
    EXPECT_NEAR(cell("MULT_TR"), ab, 1e-7);
    EXPECT_NEAR(cell("FP_ADD_TR"), (ab + 0.0625 + 0.375) / 3, 1e-7); // the same under both usages
    EXPECT_NEAR(cell("CASC_DELAY_TR"), (0.375 * 48 + ab * 45) / 93, 1e-7);

    useMode("PREADD_MULT_ALU_NOADREG");
    calculate();
    const double preadd = ((ab + 0.5 + 0.5) / 3 * 27 + 0.5) / 27;
    EXPECT_NEAR(cell("PREADD_TR"), preadd, 1e-7);
    EXPECT_NEAR(cell("MULT_TR"), ((preadd + ab + preadd) / 3 * 51 + 0.25 * 1.6) / 51, 1e-7);
}

TEST(DspLegacy, ShippedDataIsWholeAndBelievable)
{
    EXPECT_EQ(expectWholeDspData<Data>("LEGACY_INT24", kDspParts, true), 16u);
    Params params;
    params[Params::NUM_DSP] = 1;
    params[Params::CLOCK_FREQ] = 500.0f;
    for (const auto rate : {Params::A_TR, Params::B_TR, Params::C_TR, Params::D_TR, Params::INMODE_NEGATE_TR,
                            Params::ALU_CTRL_CARRYIN_TR})
        params[rate] = 0.125f;
    params[Params::P_OUTPUT_TR] = 0.5f;
    const float adder = shippedDspPower<Model>(params);
    EXPECT_TRUE(adder > 1.0f && adder < 4.0f) << adder;
    params[Params::WIDEXOR_USED] = "YES";
    const float wideXor = shippedDspPower<Model>(params) - adder;
    EXPECT_TRUE(wideXor > 0.01f && wideXor < 0.2f) << wideXor;
    params[Params::MULT_USED] = "YES";
    EXPECT_GT(shippedDspPower<Model>(params), adder + wideXor);
}

} // namespace zelm::test::dspLegacyTest

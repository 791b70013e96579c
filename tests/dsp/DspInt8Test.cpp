#include "dsp/ZelmOrvaneDspInt8Model.h"

#include "DspTables.h"

namespace zelm::test::dspInt8Test {

using Model = ZelmOrvaneDspInt8Model;
using Params = ZelmOrvaneDspInt8Params;
using Data = ZelmOrvaneDspInt8Data;

const std::vector<std::string> kModes{"MULT_MREG",          "PREADD_MULT",         "MULT_NOMREG",
                                      "PREADD_MULT_NOMREG", "PREADD_MULT_NOADREG", "PREADD_MULT_NOMREG_NOADREG"};

const std::vector<DspFamilyRow> kRows{
#define IC_FLOAT_FAMILY(cell, function, unit, meaning, member, metric) {#cell, #member, #metric},
#include "dsp/ZelmOrvaneDspInt8Cells.def"
};

class DspInt8Test : public DspSliceTest<Model> {
protected:
    DspInt8Test() : DspSliceTest({.family = "INT8", .usage = "MULT_NO_MREG_NO_PREADD_NO_ADREG_NO", .mode = "MULT_MREG"})
    {
    }
};

TEST(DspInt8, FamiliesAreModesTimesComponents)
{
    expectDspFamilies(kRows, "INT8", kModes, kDspParts,
                      {"componentCurrent", "dynamicCurrent", "offCurrent", "toggleRate"});
    EXPECT_EQ(std::count_if(kRows.begin(), kRows.end(), [](const auto& row) { return row.cell.starts_with("INT8_"); }),
              108);
}

TEST_F(DspInt8Test, AGlobalRateReplacesAllInEveryMode)
{
    set("GLOBAL_TR", 1.0f);
    expectGlobalRate(kModes, kDspParts, 1.0f);
    useMode("ALU_ONLY"); // not a mode of this slice
    EXPECT_THAT(after("MULT_TR"), IsBits(0.0f));
}

TEST_F(DspInt8Test, InputAIsWidenedInEveryModeUnlessTheOpmodeMoves)
{
    for (const std::string& mode : kModes) {
        useMode(mode);
        set("OPMODE_USAGE", "CONST");
        EXPECT_NEAR(after("AB_DATA_TR"), 0.14120625, 1e-8) << mode; // (0.125 x 1.2593 + 0.125) / 2
        set("OPMODE_USAGE", "DYNAMIC");
        EXPECT_THAT(after("AB_DATA_TR"), IsBits(0.125f)) << mode;
    }
}

TEST_F(DspInt8Test, TheInvertersAreNotCappedAsTheControls)
{
    set("ALU_CTRL_CARRYIN_TR", 0.5f);
    EXPECT_THAT(after("ALUREG_TR"), IsBits(0.5f));  // 1.11105, capped
    EXPECT_THAT(cell("OPTINV_TR"), IsBits(1.111f)); // 0.5 x 2.222
    set("OPMODE_USAGE", "DYNAMIC");
    EXPECT_THAT(after("ALUREG_TR"), IsBits(0.5f));
    EXPECT_THAT(cell("OPTINV_TR"), IsBits(0.5555f));
    set("ALU_CTRL_CARRYIN_TR", 100.0f);
    EXPECT_THAT(after("OPTINV_TR"), IsBits(50.0f));
    set("OPMODE_USAGE", "CONST");
    EXPECT_THAT(after("OPTINV_TR"), IsBits(50.0f));
}

TEST_F(DspInt8Test, ControlsAndInvertersHaveTheirOwnFactors)
{
    set("ALU_CTRL_CARRYIN_TR", 0.125f);
    EXPECT_THAT(after("ALUREG_TR"), IsBits(0.2777625f)); // 0.125 x 2.2221
    EXPECT_THAT(cell("OPTINV_TR"), IsBits(0.27775f));    // 0.125 x 2.222
    set("OPMODE_USAGE", "DYNAMIC");
    EXPECT_THAT(after("ALUREG_TR"), IsBits(0.138875f)); // 0.125 x 1.111
    EXPECT_THAT(cell("OPTINV_TR"), IsBits(0.138875f));
}

TEST_F(DspInt8Test, ThePreAddersPathIsCappedAtAHalf)
{
    set("A_TR", 10.0f);
    EXPECT_THAT(after("PREADD_DATA_TR"), IsBits(0.5f));
}

TEST_F(DspInt8Test, TheMultipliersControlsAreScaledOnlyWithoutPreAdder)
{
    set("OPMODE_USAGE", "DYNAMIC"); // A and B at their 0.125
    set("D_TR", 0.125f);
    set("INMODE_NEGATE_TR", 0.125f);
    EXPECT_NEAR(after("MULT_TR"), (0.125 * 51 + 0.125 * 2.666) / 51, 1e-8);
    set("INMODE_NEGATE_TR", 0.25f); // 0.6665, capped at 0.5
    EXPECT_NEAR(after("MULT_TR"), (0.125 * 51 + 0.5) / 51, 1e-8);

    useMode("PREADD_MULT");
    set("INMODE_NEGATE_TR", 2.0f); // the plain controls, neither scaled nor capped
    const double preadd = (0.125 * 27 + 4.0) / 27;
    EXPECT_NEAR(after("PREADD_TR"), preadd, 1e-8);
    EXPECT_NEAR(cell("MULT_TR"), ((preadd + 0.125 + preadd) / 3 * 51 + 2.0) / 51, 1e-8);
}

TEST_F(DspInt8Test, AdderAndCascadeHaveTheirOwnWeights)
{
    set("ALU_CTRL_CARRYIN_TR", 0.5f);
    set("P_OUTPUT_TR", 0.25f);
    const double ab = 0.14120625;
    EXPECT_NEAR(after("FP_ADD_TR"), (0.125 + ab + 0.25) / 3, 1e-7);
    EXPECT_NEAR(cell("CASC_DELAY_TR"), (0.25 * 58 + ab * 54) / 112, 1e-7);
    set("OPMODE_USAGE", "DYNAMIC");
    EXPECT_THAT(after("FP_ADD_TR"), IsBits(0.5555f)); // 0.5 x 1.111
    EXPECT_THAT(cell("CASC_DELAY_TR"), IsBits(0.1875f));
}

TEST_F(DspInt8Test, CurrentsAddUp)
{
    set("USE_GLOBAL_TR", "YES");
    set("GLOBAL_TR", 1.0f);
    set("VCCINT", 0.4f);
    set("CLOCK_FREQ", 100.0f);
    params[Params::NUM_DSP] = 3;
    EXPECT_THAT(after("DYNAMIC_VCCINT_CURRENT"), IsBits(714.09375f)); // (17 x 12.53125 + 25) x 3
    EXPECT_THAT(after("AGGREGATED_TR"), IsBits(1.03125f));            // (15 + 1/2 + 1) x 0.25 / 4
}

TEST(DspInt8, ShippedDataIsWholeAndBelievable)
{
    EXPECT_EQ(expectWholeDspData<Data>("INT8", kDspParts, true), 16u);
    Params params;
    params[Params::CLOCK_FREQ] = 500.0f;
    const float power = shippedDspPower<Model>(params);
    EXPECT_TRUE(power > 2.0f && power < 6.0f) << power;
    params[Params::PREADD_USED] = "YES";
    EXPECT_GT(shippedDspPower<Model>(params), power);
}

} // namespace zelm::test::dspInt8Test

#include "dsp/ZelmOrvaneDspCplxModel.h"

#include "DspTables.h"

namespace zelm::test::dspCplxTest {

using Model = ZelmOrvaneDspCplxModel;
using Params = ZelmOrvaneDspCplxParams;
using Data = ZelmOrvaneDspCplxData;

const std::vector<std::string> kModes{"MULT_ALU", "MULT_ALU_NOMREG", "MULT_ALU_NOADREG", "MULT_ALU_NOMREG_NOADREG"};

const std::vector<DspFamilyRow> kRows{
#define IC_FLOAT_FAMILY(cell, function, unit, meaning, member, metric) {#cell, #member, #metric},
#include "dsp/ZelmOrvaneDspCplxCells.def"
};

// The complex stage of the integer slice is two here.
std::vector<std::string> cplxParts()
{
    std::vector<std::string> parts(kDspParts.begin(), kDspParts.begin() + 15);
    parts.insert(parts.end(), {"COMPLEX_STG0", "COMPLEX_STG1", "CASC_DELAY"});
    return parts;
}

class DspCplxTest : public DspSliceTest<Model> {
protected:
    DspCplxTest()
        : DspSliceTest({.family = "CPLX",
                        .usage = "MULT_YES_MREG_NO_PREADD_YES_ADREG_NO",
                        .mode = "MULT_ALU",
                        .components = cplxParts()})
    {
    }

    void togglesOfOne()
    {
        set("USE_GLOBAL_TR", "YES");
        set("GLOBAL_TR", 1.0f);
        set("VCCINT", 0.4f);
        set("CLOCK_FREQ", 100.0f);
    }
};

TEST(DspCplx, HasNoCurrentOfTheWholePair)
{
    EXPECT_EQ(Params::string_to_float_enum("DYNAMIC_VCCINT_CURRENT"), Params::LastFloat);
}

TEST(DspCplx, FamiliesAreModesTimesComponents)
{
    expectDspFamilies(kRows, "CPLX", kModes, cplxParts(),
                      {"componentCurrent", "dynamicCurrent", "offCurrent", "toggleRate"});
    EXPECT_EQ(std::count_if(kRows.begin(), kRows.end(), [](const auto& row) { return row.cell.starts_with("CPLX_"); }),
              76);
}

TEST_F(DspCplxTest, MultiplierAndPreAdderAreAlwaysUsed)
{
    params[Params::MULT_USED] = "NO"; // outputs: calculate clears them
    params[Params::PREADD_USED] = "NO";
    calculate();
    EXPECT_EQ(params[Params::MULT_USED], "YES");
    EXPECT_EQ(params[Params::PREADD_USED], "YES");
    EXPECT_EQ(params[Params::DSP_USAGE], "MULT_YES_MREG_NO_PREADD_YES_ADREG_NO");
    set("MREG_USED", "YES");
    set("ADREG_USED", "YES");
    calculate();
    EXPECT_EQ(params[Params::DSP_USAGE], "MULT_YES_MREG_YES_PREADD_YES_ADREG_YES");
    params[Params::MULT_USED] = "NO"; // a set cell stays, and the usage doesn't read it
    EXPECT_EQ(Model::getGlobal().calculateMultUsed(params, Data::getGlobal()), "NO");
    params[Params::DSP_USAGE] = std::string(zelm::unsetString);
    EXPECT_EQ(Model::getGlobal().calculateDspUsage(params, Data::getGlobal()),
              "MULT_YES_MREG_YES_PREADD_YES_ADREG_YES");
}

TEST_F(DspCplxTest, TheGlobalRateIsAnEighthByDefault)
{
    expectGlobalRate(kModes, cplxParts(), 0.125f);
}

TEST_F(DspCplxTest, OneUnitIsTwoSlicesAndOnePairOfStages)
{
    togglesOfOne();
    tables.parts = {{"COMPLEX_STG0", "0.5"}, {"COMPLEX_STG1", "1.0"}};
    load();
    calculate();
    // a component 12.53125 mA, the stages 25.03125 and 50.03125 mA; the rest (5 - 4) x 100 / 4
    const float macbC = 0.4f * (16.0f * 12.53125f + 25.0f);
    const float stage0 = 25.03125f * 0.4f;
    const float stage1 = 50.03125f * 0.4f;
    EXPECT_THAT(cell("DYNAMIC_VCCINT_MACBC_POWER"), IsBits(macbC));
    EXPECT_THAT(cell("DYNAMIC_VCCINT_STAGE0_POWER"), IsBits(stage0));
    EXPECT_THAT(cell("DYNAMIC_VCCINT_STAGE1_POWER"), IsBits(stage1));
    EXPECT_THAT(cell("DYNAMIC_VCCINT_POWER"), IsBits(2.0f * macbC + stage0 + stage1));
    EXPECT_NEAR(cell("DYNAMIC_VCCINT_POWER"), 210.425, 1e-3);
}

TEST_F(DspCplxTest, TheCountOfSlicesIsNotRead)
{
    togglesOfOne();
    calculate();
    EXPECT_EQ(params[Params::NUM_DSP], zelm::unsetInt);
    const float power = cell("DYNAMIC_VCCINT_POWER");
    for (const int count : {0, 1, 2, 1000, -3}) {
        params[Params::NUM_DSP] = count;
        calculate();
        EXPECT_THAT(cell("DYNAMIC_VCCINT_POWER"), IsBits(power)) << count;
        EXPECT_THAT(cell("DYNAMIC_VCCINT_MACBC_POWER"), IsBits(0.4f * 225.5f)) << count;
    }
}

TEST_F(DspCplxTest, TheStagesWeighHalfInTheMeanRate)
{
    togglesOfOne();
    EXPECT_THAT(after("AGGREGATED_TR"), IsBits(1.0625f)); // (15 + 1/2 + 1/2 + 1) x 0.25 / 4
    tables.parts = {{"COMPLEX_STG0", "2.25"}};
    load();
    EXPECT_THAT(after("AGGREGATED_TR"), IsBits(1.3125f)); // half of 2 more, over 4
    tables.parts = {{"CASC_DELAY", "2.25"}};
    load();
    EXPECT_THAT(after("AGGREGATED_TR"), IsBits(1.5625f)); // the cascade in full
    tables.componentSum = "0.0";
    load();
    EXPECT_THAT(after("AGGREGATED_TR"), IsBits(0.0f));
}

// A 0.25, B 0.125, C 0.0625, D 0.5, CONJ 0.375, CARRY 0.125, right 0.1875, left 0.25, left A 0.0625, output 0.375
TEST_F(DspCplxTest, RatesFlowThroughTheNetwork)
{
    set("A_TR", 0.25f);
    set("C_TR", 0.0625f);
    set("D_FROM_A_CPLX_TR", 0.5f);
    set("CONJ_INPUT_TR", 0.375f);
    set("B2B1_CPLX_R_TR", 0.1875f);
    set("B2B1_CPLX_L_TR", 0.25f);
    set("A_CPLX_L_B_TR", 0.0625f);
    set("P_OUTPUT_TR", 0.375f);
    calculate();
    EXPECT_THAT(cell("AB_DATA_TR"), IsBits(0.1875f));
    const double preadd = (1.25 / 3 * 27 + 0.375) / 27;
    EXPECT_NEAR(cell("PREADD_TR"), preadd, 1e-7);
    const double stage0 = (0.6875 / 3 * 18 + 0.375) / 18;
    EXPECT_NEAR(cell("COMPLEX_STG0_TR"), stage0, 1e-7);
    const double stage1 = (stage0 + 0.0625 + stage0) / 3;
    EXPECT_NEAR(cell("COMPLEX_STG1_TR"), stage1, 1e-7);
    EXPECT_NEAR(cell("PREADD_DATA_TR"), (preadd * 0.63 + stage0 * 0.37 + 0.5) / 2, 1e-7);
    const double mult = ((preadd + 0.125 + preadd) / 3 * 51 + 0.375) / 51;
    EXPECT_NEAR(cell("MULT_TR"), mult, 1e-7);
    const double products = (mult + stage1 + mult) / 3;
    EXPECT_NEAR(cell("M_DATA_TR"), products, 1e-7);
    EXPECT_NEAR(cell("ALUMUX_TR"), (0.0625 + products + 0.375) / 3, 1e-7);
    EXPECT_NEAR(cell("ALUREG_TR"), 0.125 * 2.833, 1e-7);
    EXPECT_NEAR(cell("FP_ADD_TR"), 0.625 / 3, 1e-7);
    EXPECT_NEAR(cell("CASC_DELAY_TR"), (0.375 * 58 + 0.25 * 18 + 0.125 * 18) / 94, 1e-7);
    for (const char* part : {"ALUADD_TR", "PATDET_TR", "OUTPUT_TR", "FP_NORM_TR"})
        EXPECT_THAT(cell(part), IsBits(0.375f)) << part;

    set("OPMODE_USAGE", "DYNAMIC");
    calculate();
    EXPECT_NEAR(cell("ALUMUX_TR"), ((0.4375 + products) / 3 * 58 + 1.25) / 58, 1e-7);
    EXPECT_NEAR(cell("ALUREG_TR"), 0.1416625, 1e-8); // 0.125 x 1.1333
    EXPECT_NEAR(cell("OPTINV_TR"), 0.1416625, 1e-8);
    EXPECT_NEAR(cell("FP_ADD_TR"), 0.14166625, 1e-8); // 0.125 x 1.13333
}

TEST_F(DspCplxTest, AllIsCappedButTheSecondStageAndTheInputs)
{
    setAll(2.0f);
    for (const char* usage : {"CONST", "DYNAMIC"}) {
        set("OPMODE_USAGE", usage);
        calculate();
        for (const char* part : {"AB_DATA", "PREADD_DATA", "ALUREG", "OPTINV", "ALUMUX", "PREADD", "MULT", "M_DATA",
                                 "FP_EXP", "COMPLEX_STG0", "CASC_DELAY"})
            EXPECT_THAT(cell(std::string(part) + "_TR"), IsBits(0.5f)) << usage << " " << part;
        EXPECT_THAT(cell("COMPLEX_STG1_TR"), IsBits(1.5f)); // (0.5 + 2 + 2) / 3
        EXPECT_THAT(cell("C_DATA_TR"), IsBits(2.0f));
        EXPECT_THAT(cell("OUTPUT_TR"), IsBits(2.0f));
    }
    EXPECT_NEAR(cell("FP_ADD_TR"), 2.26666, 1e-6); // DYNAMIC
}

TEST(DspCplx, ShippedDataIsWholeAndBelievable)
{
    EXPECT_EQ(expectWholeDspData<Data>("CPLX", cplxParts(), true), 4u);
    Params params;
    params[Params::CLOCK_FREQ] = 500.0f;
    params[Params::MREG_USED] = "YES";
    params[Params::ADREG_USED] = "YES";
    const float power = shippedDspPower<Model>(params);
    EXPECT_TRUE(power > 4.0f && power < 12.0f) << power;
    const float stages = params[Params::DYNAMIC_VCCINT_STAGE0_POWER] + params[Params::DYNAMIC_VCCINT_STAGE1_POWER];
    EXPECT_TRUE(stages > 0.02f * power && stages < 0.3f * power) << stages;
}

} // namespace zelm::test::dspCplxTest

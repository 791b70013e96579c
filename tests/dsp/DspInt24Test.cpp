#include "dsp/ZelmOrvaneDspInt24Model.h"

#include "DspTables.h"

#include <cmath>

namespace zelm::test::dspInt24Test {

using Model = ZelmOrvaneDspInt24Model;
using Params = ZelmOrvaneDspInt24Params;
using Data = ZelmOrvaneDspInt24Data;

const std::vector<std::string>& kModes = kDspInt24Modes;

const std::vector<DspFamilyRow> kRows{
#define IC_FLOAT_FAMILY(cell, function, unit, meaning, member, metric) {#cell, #member, #metric},
#include "dsp/ZelmOrvaneDspInt24Cells.def"
};

class DspInt24Test : public DspSliceTest<Model> {
protected:
    DspInt24Test()
        : DspSliceTest({.family = "INT24", .usage = "MULT_NO_MREG_NO_PREADD_NO_ADREG_NO", .mode = "MULT_ALU_MREG"})
    {
    }

    /// Rates of 1, so that currents are the tables' numbers times the clock.
    void togglesOfOne()
    {
        set("USE_GLOBAL_TR", "YES");
        set("GLOBAL_TR", 1.0f);
        set("VCCINT", 0.8f);
        set("CLOCK_FREQ", 100.0f);
    }
};

TEST(DspInt24, FamiliesAreModesTimesComponents)
{
    expectDspFamilies(kRows, "INT24", kModes, kDspParts,
                      {"componentCurrent", "dynamicCurrent", "offCurrent", "toggleRate"});
    EXPECT_EQ(std::count_if(kRows.begin(), kRows.end(), [](const auto& row) { return row.cell.starts_with("INT24_"); }),
              126);
}

TEST_F(DspInt24Test, TheUsageSelectsTheMode)
{
    calculate();
    EXPECT_EQ(params[Params::DSP_USAGE], "MULT_NO_MREG_NO_PREADD_NO_ADREG_NO");
    EXPECT_EQ(params[Params::OPERATIONAL_MODE], "MULT_ALU_MREG");
    EXPECT_EQ(params[Params::DSP_MODE], zelm::unsetString); // no formula reads it
    set("DSP_MODE", "OTHER");
    calculate();
    EXPECT_EQ(params[Params::OPERATIONAL_MODE], "MULT_ALU_MREG");
    EXPECT_THAT(cell("MULT_DYNAMIC_CURRENT"), IsBits(0.25f));
    EXPECT_THAT(cell("MULT_OFF_CURRENT"), IsBits(0.125f));
    EXPECT_THAT(cell("TOTAL_MEASURED_DYNAMIC_CURRENT"), IsBits(5.0f));
    EXPECT_THAT(cell("COMPONENT_SUM_OFF_CURRENT"), IsBits(zelm::unsetFloat)); // no formula reads it
    EXPECT_THAT(after("COMPONENT_SUM_OFF_CURRENT"), IsBits(0.125f));
}

TEST_F(DspInt24Test, AGlobalRateReplacesAllInEveryMode)
{
    set("GLOBAL_TR", 1.0f);
    expectGlobalRate(kModes, kDspParts, 1.0f);
}

TEST_F(DspInt24Test, InputAIsWidenedUnlessTheOpmodeMoves)
{
    calculate();                                       // A and B at 0.125
    EXPECT_NEAR(cell("AB_DATA_TR"), 0.14120625, 1e-8); // (0.125 x 1.2593 + 0.125) / 2
    set("OPMODE_USAGE", "DYNAMIC");
    EXPECT_THAT(after("AB_DATA_TR"), IsBits(0.125f));
    useMode("ALU_ONLY");
    EXPECT_THAT(after("AB_DATA_TR"), IsBits(0.125f));
    set("OPMODE_USAGE", "CONST");
    EXPECT_THAT(after("AB_DATA_TR"), IsBits(0.125f));
}

TEST_F(DspInt24Test, DecimalFactorsAreDoubles)
{
    int apart = 0;
    for (int step = 1; step < 50; ++step) {
        const float rate = static_cast<float>(step) * 0.0037f;
        set("A_TR", rate);
        set("B_TR", 0.0f);
        const float widened = static_cast<float>(static_cast<double>(rate) * 1.2593);
        EXPECT_THAT(after("AB_DATA_TR"), IsBits(widened / 2.0f));
        apart += widened != rate * 1.2593f;
    }
    EXPECT_GT(apart, 0) << "rates that don't tell double from single";
}

TEST_F(DspInt24Test, TheControlsAreCapped)
{
    set("ALU_CTRL_CARRYIN_TR", 0.25f);
    EXPECT_THAT(after("ALUREG_TR"), IsBits(0.5f)); // 0.25 x 17 / 6 is 0.708
    EXPECT_THAT(cell("OPTINV_TR"), IsBits(0.5f));
    set("OPMODE_USAGE", "DYNAMIC");
    EXPECT_THAT(after("ALUREG_TR"), IsBits(4.25f / 15.0f));
    EXPECT_NEAR(cell("OPTINV_TR"), 0.283333, 1e-6);
    useMode("ALU_ONLY"); // as it stands, and uncapped
    set("ALU_CTRL_CARRYIN_TR", 0.75f);
    EXPECT_THAT(after("ALUREG_TR"), IsBits(0.75f));
    EXPECT_THAT(cell("OPTINV_TR"), IsBits(0.75f));
}

TEST_F(DspInt24Test, ThePreAddersPathIsCappedAtFifty)
{
    set("OPMODE_USAGE", "DYNAMIC");
    set("INMODE_NEGATE_TR", 0.0f);
    set("A_TR", 10.0f);
    set("B_TR", 10.0f);
    EXPECT_THAT(after("PREADD_TR"), IsBits(0.5f));
    EXPECT_THAT(cell("PREADD_DATA_TR"), IsBits(5.25f)); // mean of 10 and 0.5: no cap of 0.5 here
    set("A_TR", 200.0f);
    set("B_TR", 200.0f);
    EXPECT_THAT(after("PREADD_DATA_TR"), IsBits(50.0f));
}

// A 0.25, B 0.125, C 0.0625, D 0.5, controls 0.125, output 0.375: the network by hand, with A x 1.2593.
TEST_F(DspInt24Test, RatesFlowThroughTheNetwork)
{
    set("A_TR", 0.25f);
    set("C_TR", 0.0625f);
    set("D_TR", 0.5f);
    set("P_OUTPUT_TR", 0.375f);
    calculate();
    const double ab = (0.25 * 1.2593 + 0.125) / 2.0; // 0.2199125
    EXPECT_NEAR(cell("AB_DATA_TR"), ab, 1e-7);
    EXPECT_NEAR(cell("PREADD_TR"), ab, 1e-7);
    EXPECT_NEAR(cell("PREADD_DATA_TR"), ((ab * 27 + 0.75) / 27 + ab) / 2, 1e-7);
    const double mult = (ab * 51 + 0.5) / 51; // 8 x 0.125 is capped at 0.5
    EXPECT_NEAR(cell("MULT_TR"), mult, 1e-7);
    EXPECT_THAT(cell("M_DATA_TR"), IsBits(cell("MULT_TR")));
    EXPECT_NEAR(cell("ALUMUX_TR"), ((ab + 0.0625 + mult + 0.375) / 4 * 58 + 1.125) / 58, 1e-7);
    EXPECT_THAT(cell("ALUADD_TR"), IsBits(0.375f));
    EXPECT_THAT(cell("PATDET_TR"), IsBits(0.375f));
    EXPECT_THAT(cell("FP_NORM_TR"), IsBits(0.375f));
    EXPECT_THAT(cell("FP_EXP_TR"), IsBits(cell("AB_DATA_TR")));
    EXPECT_NEAR(cell("FP_ADD_TR"), (0.0625 + ab + 0.375) / 3, 1e-7);
    EXPECT_NEAR(cell("COMPLEX_TR"), (ab + ((ab * 27 + 0.75) / 27 + ab) / 2) / 2, 1e-7);
    EXPECT_NEAR(cell("CASC_DELAY_TR"), (0.375 * 58 + ab * 51) / 109, 1e-7);

    useMode("PREADD_MULT_ALU");
    calculate();
    const double preadd = ((ab + 0.5 + 0.5) / 3 * 27 + 0.25) / 27;
    EXPECT_NEAR(cell("PREADD_TR"), preadd, 1e-7);
    EXPECT_NEAR(cell("MULT_TR"), ((preadd + ab + preadd) / 3 * 51 + 0.125 * 1.33) / 51, 1e-7);

    useMode("ALU_ONLY");
    set("OPMODE_USAGE", "DYNAMIC");
    calculate();
    EXPECT_THAT(cell("MULT_TR"), IsBits(0.1875f)); // the mean of A and B
    EXPECT_THAT(cell("PREADD_TR"), IsBits(0.1875f));
    EXPECT_THAT(cell("CASC_DELAY_TR"), IsBits(0.28125f)); // (0.375 + 0.1875) / 2
    EXPECT_NEAR(cell("FP_ADD_TR"), 0.14166625, 1e-8);     // 0.125 x 1.13333
}

TEST_F(DspInt24Test, OnlyTheMultiplierIsUncappedWithoutIt)
{
    useMode("ALU_ONLY");
    setAll(0.75f);
    EXPECT_THAT(after("MULT_TR"), IsBits(0.75f));
    EXPECT_THAT(cell("PREADD_TR"), IsBits(0.5f));
    for (const char* mode : {"MULT_ALU_MREG", "PREADD_MULT_ALU"}) {
        useMode(mode);
        EXPECT_THAT(after("MULT_TR"), IsBits(0.5f));
        EXPECT_THAT(cell("ALUMUX_TR"), IsBits(0.5f));
    }
}

TEST_F(DspInt24Test, VoltageScalesByTheTablesExponent)
{
    set("VCCINT", 0.8f);
    for (const char* exponent : {"0.0", "1.3", "-2.0", "7.5"}) {
        tables.exponent = exponent;
        load();
        EXPECT_THAT(after("VOLTAGE_SCALING"), IsBits(1.0f)) << exponent;
    }
    tables.exponent = "2.0";
    load();
    set("VCCINT", 0.4f);
    EXPECT_THAT(after("VOLTAGE_SCALING"), IsBits(0.25f));
    tables.exponent = "1.3";
    tables.normalized = "0.75";
    load();
    set("VCCINT", 0.7f);
    const double ratio = static_cast<double>(0.7f / 0.75f); // divided in single
    EXPECT_THAT(after("VOLTAGE_SCALING"), IsBits(static_cast<float>(std::pow(ratio, static_cast<double>(1.3f)))));
}

TEST_F(DspInt24Test, ANormalVoltageOfZeroStopsAllCurrent)
{
    tables.normalized = "0.0";
    load();
    calculate();
    EXPECT_THAT(cell("VOLTAGE_SCALING"), IsBits(0.0f));
    EXPECT_THAT(cell("MULT_CURRENT"), IsBits(0.0f));
    EXPECT_THAT(cell("DYNAMIC_VCCINT_CURRENT"), IsBits(0.0f));
    EXPECT_THAT(cell("DYNAMIC_VCCINT_POWER"), IsBits(0.0f));
}

TEST_F(DspInt24Test, CurrentsAddUp)
{
    togglesOfOne();
    set("VCCINT", 0.4f); // a quarter of the current
    params[Params::NUM_DSP] = 3;
    calculate();
    EXPECT_THAT(cell("MULT_CURRENT"), IsBits(12.53125f));                 // (0.25 / 0.5 x 100 + 0.125) / 4
    EXPECT_THAT(cell("TOTAL_COMPONENT_ADJ_CURRENT"), IsBits(25.0f));      // (5 - 4) x 100 / 4
    EXPECT_THAT(cell("DYNAMIC_VCCINT_CURRENT"), IsBits(714.09375f));      // (17 x 12.53125 + 25) x 3
    EXPECT_THAT(cell("DYNAMIC_VCCINT_POWER"), IsBits(714.09375f * 0.4f)); // in mW: no factor
    params[Params::NUM_DSP] = 0;
    calculate();
    EXPECT_THAT(cell("DYNAMIC_VCCINT_CURRENT"), IsBits(0.0f));
    EXPECT_THAT(cell("DYNAMIC_VCCINT_POWER"), IsBits(0.0f));
}

TEST_F(DspInt24Test, AComponentsCurrentIsSummedInDouble)
{
    tables.dynamic = "0.3";
    tables.off = "0.7";
    tables.exponent = "1.3";
    load();
    set("USE_GLOBAL_TR", "YES");
    set("CLOCK_FREQ", 333.3f);
    int apart = 0;
    for (const float rate : {0.101f, 0.113f, 0.127f, 0.139f, 0.151f, 0.163f}) {
        set("GLOBAL_TR", rate);
        calculate();
        const float scaling = static_cast<float>(std::pow(static_cast<double>(0.72f / 0.8f), double{1.3f}));
        const float perMegahertz = 0.3f * rate / 0.5f; // single, as the off term
        const float off = rate * 0.7f;
        const double current = (double{perMegahertz} * double{333.3f} + double{off}) * double{scaling};
        EXPECT_THAT(cell("MULT_CURRENT"), IsBits(static_cast<float>(current)));
        apart += static_cast<float>(current) != (perMegahertz * 333.3f + off) * scaling;
    }
    EXPECT_GT(apart, 0) << "rates that don't tell double from single";
}

TEST_F(DspInt24Test, TheSumRunsInTheComponentsOrder)
{
    // In single precision 2^25 swallows a 1 that comes after it, but not one that came before.
    tables.simulated = "1.0";
    tables.off = "0.0";
    tables.dynamic = "0.0";
    tables.componentSum = tables.totalMeasured = "1.0";
    togglesOfOne();
    set("CLOCK_FREQ", 1.0f);
    tables.parts = {{"AB_DATA", "1.0"}, {"PREADD_DATA", "1.0"}, {"C_DATA", "33554432.0"}};
    load();
    EXPECT_THAT(after("DYNAMIC_VCCINT_CURRENT"), IsBits(33554432.0f)); // 2 + 2^25 rounds to even
    tables.parts = {{"AB_DATA", "1.0"}, {"PREADD_DATA", "2.0"}, {"ALUREG", "33554432.0"}, {"CASC_DELAY", "1.0"}};
    load();
    EXPECT_THAT(after("DYNAMIC_VCCINT_CURRENT"), IsBits(33554436.0f)); // 3 first, rounded up; the last 1 is lost
    tables.parts = {{"AB_DATA", "33554432.0"}, {"MULT", "1.0"}, {"COMPLEX", "1.0"}, {"CASC_DELAY", "1.0"}};
    load();
    EXPECT_THAT(after("DYNAMIC_VCCINT_CURRENT"), IsBits(33554432.0f)); // one by one all are lost
}

TEST_F(DspInt24Test, ASimulatedRateOfZeroLeavesTheOffTerm)
{
    tables.simulated = "0.0";
    load();
    togglesOfOne();
    EXPECT_THAT(after("MULT_CURRENT"), IsBits(0.125f));
}

TEST_F(DspInt24Test, TheOffCurrentFollowsTheRateAndNotTheClock)
{
    togglesOfOne();
    set("CLOCK_FREQ", 0.0f);
    EXPECT_THAT(after("MULT_CURRENT"), IsBits(0.125f));
    set("GLOBAL_TR", 0.5f);
    EXPECT_THAT(after("MULT_CURRENT"), IsBits(0.0625f));
}

TEST_F(DspInt24Test, AMeasuredWholeBelowTheSumLowersTheTotal)
{
    togglesOfOne();
    tables.totalMeasured = "3.0";
    load();
    EXPECT_THAT(after("TOTAL_COMPONENT_ADJ_CURRENT"), IsBits(-100.0f));
    EXPECT_THAT(cell("DYNAMIC_VCCINT_CURRENT"), IsBits(752.125f)); // 17 x 50.125 - 100
    tables.totalMeasured = "-5.0";
    load();
    EXPECT_THAT(after("DYNAMIC_VCCINT_CURRENT"), IsBits(-47.875f)); // 852.125 - 900: no clamp
    set("GLOBAL_TR", 0.0f);
    EXPECT_THAT(after("DYNAMIC_VCCINT_CURRENT"), IsBits(-900.0f)); // no toggle factor on the rest
}

TEST_F(DspInt24Test, TheComplexStageWeighsHalfInTheMeanRate)
{
    set("USE_GLOBAL_TR", "YES");
    set("GLOBAL_TR", 1.0f);
    calculate();
    EXPECT_THAT(cell("AGGREGATED_TR"), IsBits(zelm::unsetFloat));                      // only where the host asks
    EXPECT_THAT(after("AGGREGATED_TR"), IsBits(1.03125f));                             // (15 + 1/2 + 1) x 0.25 / 4
    EXPECT_THAT(cell("INT24_PREADD_MULT_ALU_NOMREG_AGGREGATED_TR"), IsBits(1.03125f)); // all modes alike
    tables.componentSum = "0.0";
    load();
    EXPECT_THAT(after("AGGREGATED_TR"), IsBits(0.0f));
    useMode("NO_SUCH_MODE");
    EXPECT_THAT(after("AGGREGATED_TR"), IsBits(0.0f));
}

TEST_F(DspInt24Test, AnUnknownUsageMissesEverything)
{
    set("MULT_USED", "YES");
    calculate();
    EXPECT_EQ(params[Params::OPERATIONAL_MODE], zelm::unsetString);
    for (const std::string& component : kDspParts) {
        EXPECT_THAT(cell(component + "_TR"), IsBits(0.0f)) << component;
        EXPECT_THAT(cell(component + "_DYNAMIC_CURRENT"), IsBits(zelm::unsetFloat)) << component;
    }
    EXPECT_THAT(cell("DYNAMIC_VCCINT_CURRENT"), IsBits(0.0f)); // no toggles, and the sentinels cancel
}

TEST_F(DspInt24Test, AMissingRowEntersTheSumAsANumber)
{
    tables.components.pop_back(); // the cascade
    load();
    togglesOfOne();
    calculate();
    EXPECT_THAT(cell("CASC_DELAY_DYNAMIC_CURRENT"), IsBits(zelm::unsetFloat));
    EXPECT_TRUE(std::isinf(cell("DYNAMIC_VCCINT_CURRENT")));
}

TEST(DspInt24, ShippedDataIsWholeAndBelievable)
{
    EXPECT_EQ(expectWholeDspData<Data>("INT24", kDspParts, true), 16u);
    Params params;
    params[Params::CLOCK_FREQ] = 500.0f;
    const float adder = shippedDspPower<Model>(params);
    EXPECT_TRUE(adder > 1.5f && adder < 4.0f) << adder;
    params[Params::MULT_USED] = "YES";
    params[Params::MREG_USED] = "YES";
    const float multiplier = shippedDspPower<Model>(params);
    EXPECT_TRUE(multiplier > adder && multiplier < 6.0f) << multiplier;
    params[Params::PREADD_USED] = "YES";
    params[Params::ADREG_USED] = "YES";
    EXPECT_GT(shippedDspPower<Model>(params), multiplier);
    params[Params::OPMODE_USAGE] = "DYNAMIC";
    EXPECT_LT(shippedDspPower<Model>(params), 8.0f);
}

} // namespace zelm::test::dspInt24Test

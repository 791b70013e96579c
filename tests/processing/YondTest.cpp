#include "processing/ZelmOrvaneYondModel.h"

#include "processing/ProcessingTables.h"
#include "support/BlockFixture.h"

#include <cmath>
#include <set>

namespace zelm::test::yondTest {

using Params = ZelmOrvaneYondParams;
using Data = ZelmOrvaneYondData;
using Model = ZelmOrvaneYondModel;

// Both rails at the characterisation voltage, and tables of small numbers: what comes out is exact.
class YondTest : public BlockFixture<Model> {
protected:
    YondTest()
    {
        params[Params::VCCPSFP] = 1.0f;
        params[Params::VCCPSLP] = 1.0f;
    }

    void load()
    {
        BlockFixture::load(tableText("YOND_DATA", yond) + tableText("SIM_CONDITIONS", conditions) +
                           "MIO_BANK_DISTRIBUTION : {"
                           "LPD_GEM0 : { INPUT = 3; OUTPUT = 2; BIDI = 4; BIAS = 6; LOAD = 15; };"
                           "LPD_GEM1 : { INPUT = 1; OUTPUT = 5; BIDI = 2; BIAS = 7; LOAD = 20; };"
                           "LPD_IOU_BANK1 : { INPUT = 8; OUTPUT = 9; BIDI = 10; BIAS = 11; LOAD = 12; }; };");
    }

    void calculate()
    {
        load();
        model.calculate(params);
    }

    float calculated(Params::FloatEnum cell)
    {
        calculate();
        return params[cell];
    }

    TableRows yond{{"APU_CLOCK", 2.0f},
                   {"APU_DYNAMIC", 3.0f},
                   {"MAIA_CPU_CLOCK", 5.0f},
                   {"MAIA_CPU_DYNAMIC", 7.0f},
                   {"L2_MEMORY_DYNAMIC", 11.0f},
                   {"FP_INTERCONNECT_CLOCK", 13.0f},
                   {"FP_INTERCONNECT_DYNAMIC", 17.0f},
                   {"CCI_CLOCK", 19.0f},
                   {"CCI_DYNAMIC", 23.0f},
                   {"PLL_DYNAMIC_POWER_2160MHZ_VCCINT", 10.0f},
                   {"PLL_DYNAMIC_POWER_4320MHZ_VCCINT", 30.0f},
                   {"PLL_DYNAMIC_POWER_2160MHZ_VCCAUX", 100.0f},
                   {"PLL_DYNAMIC_POWER_4320MHZ_VCCAUX", 140.0f},
                   {"LPD_IOU_CLOCK", 29.0f},
                   {"LPD_IOU_DYNAMIC", 31.0f},
                   {"GEM_CLOCK", 37.0f},
                   {"GEM_DYNAMIC", 41.0f},
                   {"USB2_DYNAMIC", 43.0f},
                   {"LP_INTERCONNECT_CLOCK", 47.0f},
                   {"LP_INTERCONNECT_DYNAMIC", 53.0f},
                   {"RPU_TIEOFF_WRAPPER_CLOCK", 59.0f},
                   {"RPU_TIEOFF_WRAPPER_DYNAMIC", 61.0f},
                   {"OCM_MEMORY_DYNAMIC", 67.0f},
                   {"TCM_MEMORY_DYNAMIC", 71.0f},
                   {"MIO_IOB_VCCINT_RX_DYNAMIC", 0.25f},
                   {"MIO_IOB_VCCINT_TX_DYNAMIC", 0.5f},
                   {"MIO_IOB_VCCINT_STATIC", 0.75f},
                   {"MIO_IOB_VCCO_HARLIO_1V8_RX_DYNAMIC", 0.125f},
                   {"MIO_IOB_VCCO_HARLIO_2V5_RX_DYNAMIC", 0.25f},
                   {"MIO_IOB_VCCO_HARLIO_3V3_RX_DYNAMIC", 0.5f},
                   {"MIO_IOB_VCCO_HARLIO_1V8_STATIC", 1.0f},
                   {"MIO_IOB_VCCO_HARLIO_2V5_STATIC", 2.0f},
                   {"MIO_IOB_VCCO_HARLIO_3V3_STATIC", 3.0f},
                   {"MIO_IOB_VCCO_HARLIO_1V8_TX_4MA_F_DYNAMIC", 4.0f},
                   {"MIO_IOB_VCCO_HARLIO_1V8_TX_12MA_F_DYNAMIC", 5.0f},
                   {"MIO_IOB_VCCO_HARLIO_2V5_TX_12MA_F_DYNAMIC", 6.0f},
                   {"MIO_IOB_VCCO_HARLIO_3V3_TX_12MA_F_DYNAMIC", 7.0f},
                   {"MIO_IOB_1V8_TX_12MA_CLOAD_SCALE_FACTOR", 0.25f},
                   {"MIO_IOB_2V5_TX_12MA_CLOAD_SCALE_FACTOR", 0.5f},
                   {"MIO_IOB_3V3_TX_12MA_CLOAD_SCALE_FACTOR", 0.75f},
                   {"LPD_GEM1_DYNAMIC_VCC_HARLIO_2_18", 18.0f},
                   {"LPD_GEM1_DYNAMIC_VCC_HARLIO_2_25", 26.0f},
                   {"LPD_GEM1_DYNAMIC_VCC_HARLIO_2_33", 34.0f}};
    TableRows conditions{{"PSIM_VOLTAGE", 1.0f}};
};

TEST(Yond, FamiliesAreMembersTimesMetrics)
{
    std::set<std::string> expected{"LPD_LOW_PER_IO_DYNAMIC_MIO_CORE_POWER"};
    for (const std::string bank : {"GEM0", "GEM1", "LPD_IOU_BANK1"})
        for (const std::string metric : {"_INPUTS", "_OUTPUTS", "_BIDIS", "_BIAS"})
            expected.insert(bank + metric);
    for (const std::string group : {"LPD_GEM0", "LPD_GEM1", "LPD_LOW_PER_IO_DYNAMIC"})
        for (const std::string metric : {"_MIO_18_POWER", "_MIO_25_POWER", "_MIO_33_POWER"})
            expected.insert(group + metric);
    expected.insert({"LPD_GEM0_CORE_POWER", "LPD_GEM1_CORE_POWER"});

    std::set<std::string> intermediates;
    std::set<std::string> outputs;
    for (const ZelmCellInfo& cell : Params::cells()) {
        if (cell.kind == ZelmCellInfo::Kind::intermediate)
            intermediates.emplace(cell.name);
        if (cell.kind == ZelmCellInfo::Kind::modelOutput)
            outputs.emplace(cell.name);
    }
    EXPECT_EQ(intermediates, expected);

    // Every output is a scaling or a power: per item one total, and one cell per rail.
    const std::set<std::string> scalings{"VCCPSFP_VOLTAGE_SCALING", "VCCPSLP_VOLTAGE_SCALING"};
    for (const std::string& name : outputs)
        EXPECT_TRUE(scalings.contains(name) || name.ends_with("_POWER")) << name;
    for (const std::string item :
         {"L2_MEMORY", "FP_INTERCONNECT", "CCI", "GEM0", "GEM1", "USB0", "OCM_MEMORY", "TCM_MEMORY"})
        EXPECT_TRUE(outputs.contains(item + "_POWER") && outputs.contains(item + "_DYNAMIC_POWER")) << item;
}

TEST(Yond, MisspeltNamesBelongToTheInterface)
{
    EXPECT_NE(Params::string_to_float_enum("LP_INTECONNECT_POWER"), Params::LastFloat);
    EXPECT_EQ(Params::string_to_float_enum("LP_INTERCONNECT_POWER"), Params::LastFloat);
    EXPECT_NE(Params::string_to_float_enum("DUAL_RP_DYNAMIC_POWER"), Params::LastFloat);
    EXPECT_EQ(Params::string_to_float_enum("DUAL_R5_DYNAMIC_POWER"), Params::LastFloat);
}

TEST_F(YondTest, ScalingIsTheRatioToThePower23)
{
    conditions["PSIM_VOLTAGE"] = 0.85f;
    params[Params::VCCPSFP] = 0.88f;
    params[Params::VCCPSLP] = 0.425f;
    calculate();
    // The ratio is a float, its power a double.
    const double ratio = static_cast<double>(0.88f / 0.85f);
    EXPECT_THAT(params[Params::VCCPSFP_VOLTAGE_SCALING], IsBits(static_cast<float>(std::pow(ratio, 2.3))));
    EXPECT_NEAR(params[Params::VCCPSFP_VOLTAGE_SCALING], 1.083045, 2e-6);  // exp(2.3 x 0.0346855)
    EXPECT_NEAR(params[Params::VCCPSLP_VOLTAGE_SCALING], 0.2030631, 1e-6); // exp(-2.3 x 0.6931472)
}

TEST_F(YondTest, ScalingNeedsAPositiveCharacterisationVoltage)
{
    conditions["PSIM_VOLTAGE"] = 0.0f;
    EXPECT_THAT(calculated(Params::VCCPSFP_VOLTAGE_SCALING), IsBits(0.0f));
    conditions["PSIM_VOLTAGE"] = -1.0f;
    EXPECT_THAT(calculated(Params::VCCPSLP_VOLTAGE_SCALING), IsBits(0.0f));
    conditions["PSIM_VOLTAGE"] = 1.0f;
    params[Params::VCCPSFP] = 0.0f;
    EXPECT_THAT(calculated(Params::VCCPSFP_VOLTAGE_SCALING), IsBits(0.0f));
    params[Params::VCCPSFP] = -1.0f;
    EXPECT_TRUE(std::isnan(calculated(Params::VCCPSFP_VOLTAGE_SCALING)));
}

TEST_F(YondTest, EachItemFollowsItsOwnRail)
{
    const std::vector<Params::FloatEnum> full{Params::APU_DYNAMIC_POWER, Params::CPU_DYNAMIC_POWER,
                                              Params::L2_MEMORY_DYNAMIC_POWER, Params::FP_INTERCONNECT_DYNAMIC_POWER,
                                              Params::CCI_DYNAMIC_POWER};
    const std::vector<Params::FloatEnum> low{Params::LPD_IOU_DYNAMIC_POWER,
                                             Params::GEM0_DYNAMIC_POWER,
                                             Params::GEM1_DYNAMIC_POWER,
                                             Params::USB0_DYNAMIC_POWER,
                                             Params::LP_INTERCONNECT_DYNAMIC_POWER,
                                             Params::DUAL_RP_DYNAMIC_POWER,
                                             Params::OCM_MEMORY_DYNAMIC_POWER,
                                             Params::TCM_MEMORY_DYNAMIC_POWER,
                                             Params::LPD_PLL_VCCPSLP_DYNAMIC_POWER,
                                             Params::LPD_GEM0_DYNAMIC_VCCINT_POWER,
                                             Params::LPD_GEM1_DYNAMIC_VCCINT_POWER,
                                             Params::LPD_LOW_PER_IO_DYNAMIC_VCCINT_POWER};
    params[Params::LPD_PLL_CLK_FREQ] = 2160.0f;
    calculate();
    const Params atOne = params;
    params[Params::VCCPSFP] = 0.0f;
    calculate();
    for (const auto cell : full)
        EXPECT_THAT(params[cell], IsBits(0.0f)) << Params::enum_to_string(cell);
    for (const auto cell : low) {
        EXPECT_NE(atOne[cell], 0.0f) << Params::enum_to_string(cell);
        EXPECT_THAT(params[cell], IsBits(atOne[cell])) << Params::enum_to_string(cell);
    }
    params[Params::VCCPSFP] = 1.0f;
    params[Params::VCCPSLP] = 0.0f;
    calculate();
    for (const auto cell : full) {
        EXPECT_NE(atOne[cell], 0.0f) << Params::enum_to_string(cell);
        EXPECT_THAT(params[cell], IsBits(atOne[cell])) << Params::enum_to_string(cell);
    }
    for (const auto cell : low)
        EXPECT_EQ(params[cell], 0.0f) << Params::enum_to_string(cell);
}

TEST_F(YondTest, ClockedItemsAddClockTreeAndLogic)
{
    for (const auto cell : {Params::APU_CLK_FREQ, Params::FP_INTERCONNECT_CLK_FREQ, Params::CCI_CLK_FREQ,
                            Params::LPD_IOU_CLK_FREQ, Params::LP_INTERCONNECT_CLK_FREQ})
        params[cell] = 4.0f;
    for (const auto cell : {Params::APU_LOAD, Params::FP_INTERCONNECT_LOAD, Params::CCI_LOAD, Params::LPD_IOU_LOAD,
                            Params::LP_INTERCONNECT_LOAD})
        params[cell] = 0.5f;
    calculate();
    EXPECT_THAT(params[Params::APU_DYNAMIC_POWER], IsBits(14.0f));              // 2 x 4 + 3 x 4 x 0.5
    EXPECT_THAT(params[Params::FP_INTERCONNECT_DYNAMIC_POWER], IsBits(86.0f));  // 13 x 4 + 17 x 4 x 0.5
    EXPECT_THAT(params[Params::CCI_DYNAMIC_POWER], IsBits(122.0f));             // 19 x 4 + 23 x 4 x 0.5
    EXPECT_THAT(params[Params::LPD_IOU_DYNAMIC_POWER], IsBits(178.0f));         // 29 x 4 + 31 x 4 x 0.5
    EXPECT_THAT(params[Params::LP_INTERCONNECT_DYNAMIC_POWER], IsBits(294.0f)); // 47 x 4 + 53 x 4 x 0.5
}

TEST_F(YondTest, AGateActsAtExactlyOne)
{
    const std::pair<Params::IntEnum, Params::FloatEnum> gates[] = {
        {Params::CPU_POWER_GATED, Params::CPU_DYNAMIC_POWER},
        {Params::L2_MEMORY_CLOCK_GATED, Params::L2_MEMORY_DYNAMIC_POWER},
        {Params::L2_MEMORY_POWER_GATED, Params::L2_MEMORY_DYNAMIC_POWER},
        {Params::FP_INTERCONNECT_CLOCK_GATED, Params::FP_INTERCONNECT_DYNAMIC_POWER},
        {Params::CCI_CLOCK_GATED, Params::CCI_DYNAMIC_POWER},
        {Params::LPD_IOU_CLOCK_GATED, Params::LPD_IOU_DYNAMIC_POWER},
        {Params::LP_INTERCONNECT_CLOCK_GATED, Params::LP_INTERCONNECT_DYNAMIC_POWER},
        {Params::GEM0_CLOCK_GATED, Params::GEM0_DYNAMIC_POWER},
        {Params::GEM1_CLOCK_GATED, Params::GEM1_DYNAMIC_POWER},
        {Params::DUAL_R5_POWER_GATED, Params::DUAL_RP_DYNAMIC_POWER},
    };
    for (const auto& [gate, power] : gates) {
        SCOPED_TRACE(Params::enum_to_string(gate));
        const float running = calculated(power);
        EXPECT_GT(running, 0.0f);
        for (const int notOne : {-1, 0, 2}) {
            params[gate] = notOne;
            EXPECT_THAT(calculated(power), IsBits(running)) << notOne;
        }
        params[gate] = 1;
        EXPECT_THAT(calculated(power), IsBits(0.0f));
        params[gate] = 0;
    }
}

TEST_F(YondTest, GateFlagsThatNothingReadsHaveNoEffect)
{
    const Params::IntEnum flags[] = {Params::APU_CLOCK_GATED,        Params::CPU_CLOCK_GATED,
                                     Params::OCM_MEMORY_CLOCK_GATED, Params::OCM_MEMORY_POWER_GATED,
                                     Params::TCM_MEMORY_CLOCK_GATED, Params::TCM_MEMORY_POWER_GATED};
    calculate();
    const float full = params[Params::FPD_TOTAL_DYNAMIC_POWER];
    const float low = params[Params::LPD_TOTAL_DYNAMIC_POWER];
    for (const auto flag : flags) {
        EXPECT_EQ(params[flag], zelm::unsetInt) << Params::enum_to_string(flag);
        params[flag] = 1;
    }
    calculate();
    EXPECT_THAT(params[Params::FPD_TOTAL_DYNAMIC_POWER], IsBits(full));
    EXPECT_THAT(params[Params::LPD_TOTAL_DYNAMIC_POWER], IsBits(low));
}

TEST_F(YondTest, OnOffIsOffAtZeroOnly)
{
    params[Params::FPD_PLL_CLK_FREQ] = 2160.0f;
    params[Params::LPD_PLL_CLK_FREQ] = 2160.0f;
    for (const int on : {-1, 1, 2}) {
        params[Params::L2_MEMORY_ON_OFF] = on;
        params[Params::FPD_PLL_ON_OFF] = on;
        params[Params::LPD_PLL_ON_OFF] = on;
        calculate();
        EXPECT_GT(params[Params::L2_MEMORY_POWER], 0.0f) << on;
        EXPECT_THAT(params[Params::FPD_PLL_DYNAMIC_VCCAUX_POWER], IsBits(100.0f)) << on;
        EXPECT_THAT(params[Params::LPD_PLL_VCCPSLP_DYNAMIC_POWER], IsBits(10.0f)) << on;
    }
    for (const auto flag : {Params::L2_MEMORY_ON_OFF, Params::FPD_PLL_ON_OFF, Params::LPD_PLL_ON_OFF})
        params[flag] = 0;
    calculate();
    for (const auto cell :
         {Params::L2_MEMORY_POWER, Params::FPD_PLL_DYNAMIC_VCCINT_POWER, Params::FPD_PLL_DYNAMIC_VCCAUX_POWER,
          Params::LPD_PLL_VCCPSLP_DYNAMIC_POWER, Params::LPD_PLL_VCCAUX_DYNAMIC_POWER})
        EXPECT_THAT(params[cell], IsBits(0.0f)) << Params::enum_to_string(cell);
}

TEST_F(YondTest, CoresAndMemories)
{
    params[Params::CPU_CLK_FREQ] = 4.0f;
    params[Params::CPU_LOAD] = 0.5f;
    params[Params::CPU_CORES] = 3;
    params[Params::L2_MEMORY_CLK_FREQ] = 4.0f;
    params[Params::L2_MEMORY_LOAD] = 0.5f;
    params[Params::OCM_MEMORY_CLK_FREQ] = 4.0f;
    params[Params::OCM_MEMORY_LOAD] = 0.5f;
    params[Params::OCM_MEMORY_CORES] = 3;
    params[Params::TCM_MEMORY_CLK_FREQ] = 8.0f;
    params[Params::TCM_MEMORY_LOAD] = 0.25f;
    params[Params::TCM_MEMORY_CORES] = -1;
    calculate();
    EXPECT_THAT(params[Params::CPU_DYNAMIC_POWER], IsBits(102.0f));         // (5 x 4 + 7 x 4 x 0.5) x 3
    EXPECT_THAT(params[Params::L2_MEMORY_DYNAMIC_POWER], IsBits(22.0f));    // 4 x 11 x 0.5
    EXPECT_THAT(params[Params::OCM_MEMORY_DYNAMIC_POWER], IsBits(402.0f));  // 4 x 67 x 0.5 x 3
    EXPECT_THAT(params[Params::TCM_MEMORY_DYNAMIC_POWER], IsBits(-142.0f)); // 8 x 71 x 0.25 x -1: no clamp
    params[Params::OCM_MEMORY_CORES] = 0;
    params[Params::TCM_MEMORY_CORES] = 0;
    params[Params::TCM_MEMORY_LOAD] = -1.0f;
    calculate();
    EXPECT_THAT(params[Params::OCM_MEMORY_DYNAMIC_POWER], IsBits(0.0f));
    EXPECT_THAT(params[Params::TCM_MEMORY_DYNAMIC_POWER], IsBits(0.0f)); // not -0, as the product would be
}

TEST_F(YondTest, AnIdleEthernetControllerDrawsItsClockOnly)
{
    params[Params::GEM0_CLK_FREQ] = 8.0f;
    params[Params::GEM0_LOAD] = 0.0f;
    params[Params::GEM1_CLK_FREQ] = 8.0f;
    params[Params::GEM1_LOAD] = 0.25f;
    calculate();
    EXPECT_THAT(params[Params::GEM0_DYNAMIC_POWER], IsBits(296.0f)); // 37 x 8
    EXPECT_THAT(params[Params::GEM1_DYNAMIC_POWER], IsBits(82.0f));  // 8 x 41 x 0.25, without 37 x 8
    params[Params::GEM0_CLOCK_GATED] = 1;
    EXPECT_THAT(calculated(Params::GEM0_DYNAMIC_POWER), IsBits(0.0f));
}

TEST_F(YondTest, UsbNeedsALoadAndPads)
{
    params[Params::USB0_CLK_FREQ] = 4.0f;
    params[Params::USB0_LOAD] = 0.5f;
    params[Params::USB0_IOS] = -2;
    EXPECT_THAT(calculated(Params::USB0_DYNAMIC_POWER), IsBits(86.0f)); // 43 x 4 x 0.5, whatever the pads' number
    params[Params::USB0_IOS] = 0;
    EXPECT_THAT(calculated(Params::USB0_DYNAMIC_POWER), IsBits(0.0f));
    params[Params::USB0_IOS] = 6;
    params[Params::USB0_LOAD] = -0.0f;
    EXPECT_THAT(calculated(Params::USB0_DYNAMIC_POWER), IsBits(0.0f));
}

TEST_F(YondTest, RealTimeCoresKeepTheirClockWhenIdle)
{
    params[Params::DUAL_R5_CLK_FREQ] = 4.0f;
    params[Params::DUAL_R5_LOAD] = 0.5f;
    params[Params::RPU_CORES] = 3;
    EXPECT_THAT(calculated(Params::DUAL_RP_DYNAMIC_POWER), IsBits(419.0f)); // 59 x 4 + 61 x 0.5 x 4 x 0.5 x 3
    params[Params::DUAL_R5_CLOCK_GATED] = 2;
    EXPECT_THAT(calculated(Params::DUAL_RP_DYNAMIC_POWER), IsBits(419.0f));
    params[Params::DUAL_R5_CLOCK_GATED] = 1;
    EXPECT_THAT(calculated(Params::DUAL_RP_DYNAMIC_POWER), IsBits(236.0f)); // the clock gate leaves 59 x 4
    params[Params::DUAL_R5_CLOCK_GATED] = 0;
    params[Params::DUAL_R5_LOAD] = 0.0f;
    EXPECT_THAT(calculated(Params::DUAL_R5_POWER), IsBits(236.0f));
}

TEST_F(YondTest, PllLineHasNoEnds)
{
    const auto at = [&](float frequency, Params::FloatEnum cell) {
        params[Params::FPD_PLL_CLK_FREQ] = frequency;
        params[Params::LPD_PLL_CLK_FREQ] = frequency;
        return calculated(cell);
    };
    // VCCINT: 10 at 2160, 30 at 4320, so 5 per 540 MHz; VCCAUX: 100 and 140, so 10 per 540 MHz
    EXPECT_THAT(at(2160.0f, Params::LPD_PLL_VCCPSLP_DYNAMIC_POWER), IsBits(10.0f));
    EXPECT_NEAR(at(2700.0f, Params::LPD_PLL_VCCPSLP_DYNAMIC_POWER), 15.0, 1e-5);
    EXPECT_NEAR(at(1620.0f, Params::LPD_PLL_VCCPSLP_DYNAMIC_POWER), 5.0, 1e-5);
    EXPECT_NEAR(at(540.0f, Params::LPD_PLL_VCCPSLP_DYNAMIC_POWER), -5.0, 1e-5);
    EXPECT_NEAR(at(6480.0f, Params::LPD_PLL_VCCPSLP_DYNAMIC_POWER), 50.0, 1e-4);
    EXPECT_NEAR(at(1620.0f, Params::FPD_PLL_DYNAMIC_VCCAUX_POWER), 90.0, 1e-4);
    EXPECT_NEAR(at(6480.0f, Params::LPD_PLL_VCCAUX_DYNAMIC_POWER), 180.0, 1e-4);
    // The slope is divided out before it is multiplied, in single precision.
    EXPECT_THAT(at(1600.0f, Params::FPD_PLL_DYNAMIC_VCCAUX_POWER), IsBits(100.0f + -560.0f * (40.0f / 2160.0f)));
}

TEST_F(YondTest, FullPowerPllCountsAgainstAFixedVoltage)
{
    params[Params::FPD_PLL_CLK_FREQ] = 2160.0f;
    params[Params::LPD_PLL_CLK_FREQ] = 2160.0f;
    params[Params::VCCPSFP] = 0.9f;
    params[Params::VCCPSLP] = 0.9f;
    for (const float simulated : {0.0f, 0.8f}) { // at 0 the scaling cells are 0
        conditions["PSIM_VOLTAGE"] = simulated;
        calculate();
        const double power = 10.0 * std::pow(static_cast<double>(0.9f) / 0.85, 2.3);
        EXPECT_THAT(params[Params::FPD_PLL_DYNAMIC_VCCINT_POWER], IsBits(static_cast<float>(power)));
        EXPECT_NEAR(params[Params::FPD_PLL_DYNAMIC_VCCINT_POWER], 11.40493, 1e-4); // 10 exp(2.3 x 0.0571584)
        EXPECT_THAT(params[Params::LPD_PLL_VCCPSLP_DYNAMIC_POWER],
                    IsBits(10.0f * params[Params::VCCPSLP_VOLTAGE_SCALING]));
        EXPECT_THAT(params[Params::FPD_PLL_DYNAMIC_VCCAUX_POWER], IsBits(100.0f));
        EXPECT_THAT(params[Params::LPD_PLL_VCCAUX_DYNAMIC_POWER], IsBits(100.0f));
    }
}

TEST_F(YondTest, BankCellsComeFromTheDistribution)
{
    calculate();
    EXPECT_EQ(params[Params::GEM0_INPUTS], 3);
    EXPECT_EQ(params[Params::GEM0_OUTPUTS], 2);
    EXPECT_EQ(params[Params::GEM0_BIDIS], 4);
    EXPECT_THAT(params[Params::GEM0_BIAS], IsBits(6.0f));
    EXPECT_EQ(params[Params::GEM1_INPUTS], 1);
    EXPECT_EQ(params[Params::GEM1_OUTPUTS], 5);
    // What no pulled formula reads is filled by a direct pull only.
    EXPECT_EQ(params[Params::GEM1_BIDIS], zelm::unsetInt);
    EXPECT_EQ(params[Params::LPD_IOU_BANK1_INPUTS], zelm::unsetInt);
    EXPECT_EQ(params[Params::LPD_IOU_BANK1_OUTPUTS], zelm::unsetInt);
    EXPECT_EQ(params[Params::LPD_IOU_BANK1_BIDIS], zelm::unsetInt);
    EXPECT_THAT(params[Params::LPD_IOU_BANK1_BIAS], IsBits(zelm::unsetFloat));
    EXPECT_EQ(model.calculateLpdIouBank1Inputs(params, data), 8);
    EXPECT_EQ(model.calculateLpdIouBank1Outputs(params, data), 9);
    EXPECT_EQ(model.calculateLpdIouBank1Bidis(params, data), 10);
    EXPECT_THAT(model.calculateLpdIouBank1Bias(params, data), IsBits(11.0f));
}

TEST_F(YondTest, CorePowerCountsNoBidirectionalPads)
{
    params[Params::GEM0_CLK_FREQ] = 8.0f;
    params[Params::GEM1_CLK_FREQ] = 4.0f;
    calculate();
    EXPECT_THAT(params[Params::LPD_GEM0_CORE_POWER], IsBits(14.0f)); // 3 x 0.25 x 8 + 2 x 0.5 x 8
    EXPECT_THAT(params[Params::LPD_GEM1_CORE_POWER], IsBits(11.0f)); // 1 x 0.25 x 4 + 5 x 0.5 x 4
    EXPECT_THAT(params[Params::LPD_GEM0_DYNAMIC_VCCINT_POWER], IsBits(14.0f));
    // Their term counts 0.0 times; infinite times 0.0 is no number.
    yond["MIO_IOB_VCCINT_RX_DYNAMIC"] = -3e38f;
    yond["MIO_IOB_VCCINT_TX_DYNAMIC"] = 1e38f;
    params[Params::GEM0_CLK_FREQ] = 1.0f;
    EXPECT_TRUE(std::isinf(calculated(Params::LPD_GEM0_CORE_POWER))); // 3 x -3e38, and a term of 0
    params[Params::GEM0_CLK_FREQ] = 2.0f;
    EXPECT_TRUE(std::isnan(calculated(Params::LPD_GEM0_CORE_POWER))); // -2e38 x 2 x 0.0 on top
}

TEST_F(YondTest, PadPowerPerBankVoltage)
{
    params[Params::GEM0_CLK_FREQ] = 8.0f;
    params[Params::GEM1_CLK_FREQ] = 4.0f;
    calculate();
    // GEM0 at 15 pF: load factors 0.25, 0.5, 0.75 x (15/5 - 1) + 1 = 1.5, 2, 2.5; 4 mA transmitters at 1.8 V
    // 3 x 8 x 0.125 + 2 x 8 x 4 x 1.5 + 4 x 8 x (4 x 1.5 + 0.125) + 6 x 1 = 3 + 96 + 196 + 6
    EXPECT_THAT(params[Params::LPD_GEM0_MIO_18_POWER], IsBits(301.0f));
    // 3 x 8 x 0.25 + 2 x 8 x 6 x 2 + 4 x 8 x (6 x 2 + 0.25) + 6 x 2 = 6 + 192 + 392 + 12
    EXPECT_THAT(params[Params::LPD_GEM0_MIO_25_POWER], IsBits(602.0f));
    // 3 x 8 x 0.5 + 2 x 8 x 7 x 2.5 + 4 x 8 x (7 x 2.5 + 0.5) + 6 x 3 = 12 + 280 + 576 + 18
    EXPECT_THAT(params[Params::LPD_GEM0_MIO_33_POWER], IsBits(886.0f));

    // GEM1 at 20 pF has the same cells, with load factors 1.75, 2.5, 3.25, but nothing pulls them.
    EXPECT_THAT(params[Params::LPD_GEM1_MIO_18_POWER], IsBits(zelm::unsetFloat));
    EXPECT_THAT(params[Params::LPD_GEM1_MIO_25_POWER], IsBits(zelm::unsetFloat));
    EXPECT_THAT(params[Params::LPD_GEM1_MIO_33_POWER], IsBits(zelm::unsetFloat));
    // 1 x 4 x 0.125 + 5 x 4 x 4 x 1.75 + 2 x 4 x (4 x 1.75 + 0.125) + 7 x 1 = 0.5 + 140 + 57 + 7
    EXPECT_THAT(model.calculateLpdGem1Mio18Power(params, data), IsBits(204.5f));
    // 1 x 4 x 0.25 + 5 x 4 x 6 x 2.5 + 2 x 4 x (6 x 2.5 + 0.25) + 7 x 2 = 1 + 300 + 122 + 14
    EXPECT_THAT(model.calculateLpdGem1Mio25Power(params, data), IsBits(437.0f));
    // 1 x 4 x 0.5 + 5 x 4 x 7 x 3.25 + 2 x 4 x (7 x 3.25 + 0.5) + 7 x 3 = 2 + 455 + 186 + 21
    EXPECT_THAT(model.calculateLpdGem1Mio33Power(params, data), IsBits(664.0f));
}

TEST_F(YondTest, TheLoadFactorDividesInSinglePrecision)
{
    params[Params::LPD_IOU_CLK_FREQ] = 8.0f;
    params[Params::NUM_LPD_IOU] = 3;
    calculate();
    // 12 pF / 5 is 2.4, not the 2 of a division of ints. Transmitters of 12 mA at every voltage; one static share.
    const float at18 = 8.0f * ((0.25f * (12.0f / 5.0f - 1.0f) + 1.0f) * 5.0f + 0.125f) * 3.0f + 0.75f;
    EXPECT_THAT(params[Params::LPD_LOW_PER_IO_DYNAMIC_MIO_18_POWER], IsBits(at18));
    EXPECT_NEAR(at18, 165.75, 1e-3);                                                // 8 x (1.35 x 5 + 0.125) x 3 + 0.75
    EXPECT_NEAR(params[Params::LPD_LOW_PER_IO_DYNAMIC_MIO_25_POWER], 251.55, 1e-3); // 8 x (1.7 x 6 + 0.25) x 3 + 0.75
    EXPECT_NEAR(params[Params::LPD_LOW_PER_IO_DYNAMIC_MIO_33_POWER], 357.15, 1e-3); // 8 x (2.05 x 7 + 0.5) x 3 + 0.75
}

TEST_F(YondTest, ASettingOf18VoltsTakesThe33VoltPower)
{
    const struct {
        Params::FloatEnum voltage, load, power, at25, at33;
    } groups[] = {{Params::LPD_MIO_GEM0_VOLTAGE, Params::LPD_GEM0_LOAD, Params::LPD_GEM0_DYNAMIC_MIO_POWER,
                   Params::LPD_GEM0_MIO_25_POWER, Params::LPD_GEM0_MIO_33_POWER},
                  {Params::LPD_MIO_LOW_PER_IO_VOLTAGE, Params::LPD_LOW_PER_IO_LOAD,
                   Params::LPD_LOW_PER_IO_DYNAMIC_MIO_POWER, Params::LPD_LOW_PER_IO_DYNAMIC_MIO_25_POWER,
                   Params::LPD_LOW_PER_IO_DYNAMIC_MIO_33_POWER}};
    for (const auto& group : groups) {
        SCOPED_TRACE(Params::enum_to_string(group.power));
        params[group.load] = 0.5f;
        for (const float voltage : {1.8f, 3.3f, 1.2f, std::nextafter(2.5f, 3.0f)}) {
            params[group.voltage] = voltage;
            calculate();
            EXPECT_THAT(params[group.power], IsBits(0.5f * params[group.at33])) << voltage;
        }
        params[group.voltage] = 2.5f;
        calculate();
        EXPECT_THAT(params[group.power], IsBits(0.5f * params[group.at25]));
        EXPECT_NE(params[group.at25], params[group.at33]);
    }
}

TEST_F(YondTest, Gem1TakesPowersOfTheWholeBank)
{
    params[Params::LPD_GEM1_LOAD] = 0.5f;
    const std::pair<float, float> powers[] = {{1.8f, 17.0f}, {2.5f, 13.0f}, {3.3f, 17.0f}}; // half of 34, 26, 34
    for (const auto& [voltage, power] : powers) {
        params[Params::LPD_MIO_GEM1_VOLTAGE] = voltage;
        EXPECT_THAT(calculated(Params::LPD_GEM1_DYNAMIC_MIO_POWER), IsBits(power)) << voltage;
    }
}

TEST_F(YondTest, LowSpeedCorePowerIsWhatTheGemsLeave)
{
    params[Params::GEM0_CLK_FREQ] = 8.0f; // 14
    params[Params::GEM1_CLK_FREQ] = 4.0f; // 11
    params[Params::LPD_IOU_CLK_FREQ] = 16.0f;
    params[Params::NUM_LPD_IOU] = 3;
    calculate();
    EXPECT_THAT(params[Params::LPD_LOW_PER_IO_DYNAMIC_MIO_CORE_POWER], IsBits(11.0f)); // 0.75 x 16 x 3 - (11 + 14)
    EXPECT_THAT(params[Params::LPD_LOW_PER_IO_DYNAMIC_VCCINT_POWER], IsBits(11.0f));
    params[Params::NUM_LPD_IOU] = 1;
    EXPECT_THAT(calculated(Params::LPD_LOW_PER_IO_DYNAMIC_VCCINT_POWER), IsBits(-13.0f)); // 12 - 25: no clamp
    params[Params::LPD_GEM0_MODE] = "DISABLED";
    EXPECT_THAT(calculated(Params::LPD_LOW_PER_IO_DYNAMIC_VCCINT_POWER), IsBits(1.0f)); // 12 - 11
}

TEST_F(YondTest, ADisabledGroupKeepsItsController)
{
    calculate();
    const Params enabled = params;
    params[Params::LPD_GEM0_MODE] = "DISABLED";
    params[Params::LPD_GEM1_MODE] = "DISABLED";
    params[Params::LPD_LOW_PER_IO_MODE] = "DISABLED";
    calculate();
    for (const auto cell :
         {Params::LPD_GEM0_CORE_POWER, Params::LPD_GEM0_DYNAMIC_VCCINT_POWER, Params::LPD_GEM0_DYNAMIC_MIO_POWER,
          Params::LPD_GEM0_POWER, Params::LPD_GEM1_CORE_POWER, Params::LPD_GEM1_DYNAMIC_VCCINT_POWER,
          Params::LPD_GEM1_DYNAMIC_MIO_POWER, Params::LPD_GEM1_POWER, Params::LPD_LOW_PER_IO_DYNAMIC_VCCINT_POWER,
          Params::LPD_LOW_PER_IO_DYNAMIC_MIO_POWER, Params::LPD_LOW_PER_IOS_POWER}) {
        EXPECT_NE(enabled[cell], 0.0f) << Params::enum_to_string(cell);
        EXPECT_THAT(params[cell], IsBits(0.0f)) << Params::enum_to_string(cell);
    }
    // The controllers' own gate is the clock flag; the powers per voltage are there all the same.
    for (const auto cell : {Params::GEM0_POWER, Params::GEM1_POWER, Params::LPD_GEM0_MIO_33_POWER,
                            Params::LPD_LOW_PER_IO_DYNAMIC_MIO_33_POWER}) {
        EXPECT_GT(params[cell], 0.0f) << Params::enum_to_string(cell);
        EXPECT_THAT(params[cell], IsBits(enabled[cell])) << Params::enum_to_string(cell);
    }
}

TEST_F(YondTest, OnlyExactlyDisabledDisables)
{
    calculate();
    const float total = params[Params::LPD_TOTAL_DYNAMIC_POWER];
    for (const char* mode : {"disabled", "DISABLED ", "OFF", ""}) {
        params[Params::LPD_GEM0_MODE] = mode;
        params[Params::LPD_GEM1_MODE] = mode;
        params[Params::LPD_LOW_PER_IO_MODE] = mode;
        EXPECT_THAT(calculated(Params::LPD_TOTAL_DYNAMIC_POWER), IsBits(total)) << mode;
    }
}

TEST_F(YondTest, ItemsCopyTheirDynamicPower)
{
    const std::pair<Params::FloatEnum, Params::FloatEnum> copies[] = {
        {Params::L2_MEMORY_POWER, Params::L2_MEMORY_DYNAMIC_POWER},
        {Params::FP_INTERCONNECT_POWER, Params::FP_INTERCONNECT_DYNAMIC_POWER},
        {Params::CCI_POWER, Params::CCI_DYNAMIC_POWER},
        {Params::IOU_WITHOUT_IO_POWER, Params::LPD_IOU_DYNAMIC_POWER},
        {Params::GEM0_POWER, Params::GEM0_DYNAMIC_POWER},
        {Params::GEM1_POWER, Params::GEM1_DYNAMIC_POWER},
        {Params::USB0_POWER, Params::USB0_DYNAMIC_POWER},
        {Params::LP_INTECONNECT_POWER, Params::LP_INTERCONNECT_DYNAMIC_POWER},
        {Params::DUAL_R5_POWER, Params::DUAL_RP_DYNAMIC_POWER},
        {Params::OCM_MEMORY_POWER, Params::OCM_MEMORY_DYNAMIC_POWER},
        {Params::TCM_MEMORY_POWER, Params::TCM_MEMORY_DYNAMIC_POWER},
    };
    params[Params::GEM0_CLK_FREQ] = 100.0f;  // all items differ
    params[Params::OCM_MEMORY_LOAD] = -0.0f; // and a copy keeps the sign of a zero
    calculate();
    std::set<float> values;
    for (const auto& [copy, dynamic] : copies) {
        EXPECT_THAT(params[copy], IsBits(params[dynamic])) << Params::enum_to_string(copy);
        values.insert(params[copy]);
    }
    EXPECT_EQ(values.size(), std::size(copies));
    EXPECT_TRUE(std::signbit(params[Params::OCM_MEMORY_POWER]));
}

TEST_F(YondTest, TotalsAddUpFromLeftToRight)
{
    calculate();
    const auto sum = [&](std::initializer_list<Params::FloatEnum> cells) {
        float total = params[*cells.begin()];
        for (const auto* cell = cells.begin() + 1; cell != cells.end(); ++cell)
            total += params[*cell];
        return total;
    };
    EXPECT_THAT(params[Params::APU_CPU_POWER], IsBits(sum({Params::APU_DYNAMIC_POWER, Params::CPU_DYNAMIC_POWER})));
    EXPECT_THAT(params[Params::FPD_PLL_POWER],
                IsBits(sum({Params::FPD_PLL_DYNAMIC_VCCINT_POWER, Params::FPD_PLL_DYNAMIC_VCCAUX_POWER})));
    EXPECT_THAT(params[Params::LPD_PLL_POWER],
                IsBits(sum({Params::LPD_PLL_VCCPSLP_DYNAMIC_POWER, Params::LPD_PLL_VCCAUX_DYNAMIC_POWER})));
    EXPECT_THAT(params[Params::LPD_GEM0_POWER],
                IsBits(sum({Params::LPD_GEM0_DYNAMIC_VCCINT_POWER, Params::LPD_GEM0_DYNAMIC_MIO_POWER})));
    EXPECT_THAT(params[Params::LPD_GEM1_POWER],
                IsBits(sum({Params::LPD_GEM1_DYNAMIC_VCCINT_POWER, Params::LPD_GEM1_DYNAMIC_MIO_POWER})));
    EXPECT_THAT(params[Params::LPD_LOW_PER_IOS_POWER],
                IsBits(sum({Params::LPD_LOW_PER_IO_DYNAMIC_VCCINT_POWER, Params::LPD_LOW_PER_IO_DYNAMIC_MIO_POWER})));
    EXPECT_THAT(params[Params::FPD_TOTAL_DYNAMIC_POWER],
                IsBits(sum({Params::APU_CPU_POWER, Params::L2_MEMORY_POWER, Params::FP_INTERCONNECT_POWER,
                            Params::CCI_POWER, Params::FPD_PLL_POWER})));
    EXPECT_THAT(params[Params::LPD_TOTAL_DYNAMIC_POWER],
                IsBits(sum({Params::IOU_WITHOUT_IO_POWER, Params::GEM0_POWER, Params::GEM1_POWER, Params::USB0_POWER,
                            Params::LP_INTECONNECT_POWER, Params::DUAL_R5_POWER, Params::OCM_MEMORY_POWER,
                            Params::TCM_MEMORY_POWER, Params::LPD_PLL_POWER, Params::LPD_GEM0_POWER,
                            Params::LPD_GEM1_POWER, Params::LPD_LOW_PER_IOS_POWER})));
}

TEST_F(YondTest, AMissingKeyLetsTheSentinelFlowOn)
{
    yond.erase("CCI_CLOCK");
    yond.erase("LPD_GEM1_DYNAMIC_VCC_HARLIO_2_25");
    params[Params::CCI_CLK_FREQ] = 1.0f;
    params[Params::LPD_GEM1_LOAD] = 0.5f;
    params[Params::LPD_MIO_GEM1_VOLTAGE] = 2.5f;
    calculate();
    EXPECT_THAT(params[Params::CCI_POWER], IsBits(zelm::unsetFloat)); // the logic's few units vanish beside it
    EXPECT_THAT(params[Params::LPD_GEM1_DYNAMIC_MIO_POWER], IsBits(0.5f * zelm::unsetFloat));

    TemporaryDataDirectory other;
    other.write("ZelmOrvaneYondData", "ZelmOrvaneYondData : { YOND_DATA : { MIO_IOB_VCCINT_RX_DYNAMIC = 0.5; "
                                      "MIO_IOB_VCCINT_TX_DYNAMIC = 0.0; }; SIM_CONDITIONS : {}; "
                                      "MIO_BANK_DISTRIBUTION : {}; };");
    Data::getMutableGlobal().reset();
    params[Params::GEM0_CLK_FREQ] = 1.0f;
    model.calculate(params);
    EXPECT_EQ(params[Params::GEM0_INPUTS], zelm::unsetInt);
    EXPECT_THAT(params[Params::GEM0_BIAS], IsBits(2147483648.0f));           // the int sentinel as a float
    EXPECT_THAT(params[Params::LPD_GEM0_CORE_POWER], IsBits(1073741824.0f)); // 2^31 x 0.5 x 1
}

TEST(Yond, ShippedDataIsBelievable)
{
    const DataDirVariable variable(shippedDataDirectory());
    Data::getMutableGlobal().reset();
    const Model& model = Model::getGlobal();
    const auto expectBetween = [](float value, float least, float most, const char* what) {
        EXPECT_TRUE(value > least && value < most) << what << " = " << value << " mW";
    };
    Params params;
    params[Params::NUM_LPD_IOU] = 26;
    model.calculate(params);
    expectBetween(params[Params::CPU_DYNAMIC_POWER], 400.0f, 1000.0f, "two application cores at 1.5 GHz");
    expectBetween(params[Params::DUAL_R5_POWER], 40.0f, 150.0f, "two real-time cores at 750 MHz");
    expectBetween(params[Params::FPD_PLL_POWER], 5.0f, 30.0f, "a PLL");
    expectBetween(params[Params::LPD_GEM0_POWER], 10.0f, 100.0f, "an RGMII port at 3.3 V");
    expectBetween(params[Params::LPD_LOW_PER_IO_DYNAMIC_VCCINT_POWER], 0.0f, 20.0f, "low-speed pads inside");
    Params busy;
    model.calculate(busy);
    expectBetween(busy[Params::FPD_TOTAL_DYNAMIC_POWER], 700.0f, 2000.0f, "full-power domain");
    expectBetween(busy[Params::LPD_TOTAL_DYNAMIC_POWER], 200.0f, 800.0f, "low-power domain");
    expectBetween(busy[Params::FPD_TOTAL_DYNAMIC_POWER] + busy[Params::LPD_TOTAL_DYNAMIC_POWER], 1000.0f, 3000.0f,
                  "processing system");

    // The powers per bank voltage rise with it, and GEM1's bank agrees with the law of GEM0's pads.
    const Data& data = Data::getGlobal();
    EXPECT_LT(params[Params::LPD_GEM0_MIO_18_POWER], params[Params::LPD_GEM0_MIO_25_POWER]);
    EXPECT_LT(params[Params::LPD_GEM0_MIO_25_POWER], params[Params::LPD_GEM0_MIO_33_POWER]);
    EXPECT_NEAR(model.calculateLpdGem1Mio18Power(params, data), data.findYondData("LPD_GEM1_DYNAMIC_VCC_HARLIO_2_18"),
                0.1);
    EXPECT_NEAR(model.calculateLpdGem1Mio25Power(params, data), data.findYondData("LPD_GEM1_DYNAMIC_VCC_HARLIO_2_25"),
                0.1);
    EXPECT_NEAR(model.calculateLpdGem1Mio33Power(params, data), data.findYondData("LPD_GEM1_DYNAMIC_VCC_HARLIO_2_33"),
                0.1);
}

} // namespace zelm::test::yondTest

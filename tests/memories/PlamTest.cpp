#include "memories/ZelmOrvanePlamModel.h"

#include "support/BlockFixture.h"

#include <cfloat>
#include <cmath>

namespace zelm::test::plamTest {

using Params = ZelmOrvanePlamParams;
using Data = ZelmOrvanePlamData;

// Powers of two, so that each term can be told apart and sums are exact.
constexpr std::string_view kTables = R"(
  DYNAMIC_CURRENTS : {
    PRD1_BASE : { VCCINT_CLK = 16.0; VCCINT_DATA = 1.0; VCCRAM = 8.0; };
    PWR1_BASE : { VCCINT_CLK = 32.0; VCCINT_DATA = 2.0; VCCRAM = 16.0; };
    POREG_ECC : { VCCINT_CLK = 4.0; VCCINT_DATA = 3.0; };
    PIREG_PRE : { VCCINT_CLK = 2.0; VCCINT_DATA = 8.0; };
    PECC_ENC : { VCCINT_DATA = 64.0; };
    PECC_DEC : { VCCINT_DATA = 128.0; };
    PSTBY : { VCCINT_CLK = 64.0; VCCINT_DATA = 8.0; VCCRAM = 1.0; };
    PSTBYPG : { VCCINT_CLK = 4.0; VCCINT_DATA = 2.0; };
    PSLPT : { VCCINT_DATA = 256.0; VCCRAM = 4.0; };
    PCAS_IN : { VCCINT_DATA = 512.0; };
    PCAS_RDOUT : { VCCINT_DATA = 1024.0; };
    PCASPIPE_IN : { VCCINT_CLK = 5.0; VCCINT_DATA = 2048.0; };
    PCASPIPE_RDOUT : { VCCINT_CLK = 7.0; VCCINT_DATA = 4096.0; };
  };
  SCALE_FACTORS : {
    CLK_PORT_SCALE = 0.5; PSTBY_PORT_SCALE1 = 0.25; PSTBY_PORT_SCALE2 = 0.75; REG_CAS_SCALE = 2.0;
    SIM_VOLTAGE : { VCCINT = 0.5; VCCRAM = 0.25; };
  };)";

class PlamTest : public BlockFixture<ZelmOrvanePlamModel> {
protected:
    PlamTest() : BlockFixture(kTables) {}

    // Supplies at the characterisation voltage and a clock that makes the factor of both powers a power of two.
    void useUnitFactors()
    {
        params[Params::VCCINT] = 0.5f;
        params[Params::VCCRAM] = 0.25f;
        params[Params::CLOCK_FREQ] = 2000.0f; // 2000 x 0.5 / 1000 = 1 on VCCINT, 0.5 on VCCRAM
    }
};

TEST(Plam, PortFamilyIsMembersTimesMetrics)
{
    std::vector<std::string> cells = floatIntermediatesEndingIn<Params>("_A");
    for (const std::string& name : floatIntermediatesEndingIn<Params>("_B"))
        cells.push_back(name);
    std::sort(cells.begin(), cells.end());
    EXPECT_EQ(cells, familyNames({"PRD1_CLK_VCCINT", "PWR1_CLK_VCCINT", "READ_RATE", "WRITE_RATE"}, {"_A", "_B"}));
}

TEST_F(PlamTest, DerivedDefaultsStayInTheInputs)
{
    calculate();
    EXPECT_EQ(params[Params::LATENCY], 1);
    EXPECT_EQ(params[Params::IS_CASCADED_SOFAR], "YES");
    EXPECT_THAT(params[Params::REG_CAS_USED_A], IsBits(1.0f));
    EXPECT_THAT(params[Params::REG_CAS_USED_B], IsBits(1.0f));
    EXPECT_EQ(params[Params::AVG_INACTIVE_CYCLES], 10);
    EXPECT_EQ(params[Params::AUTO_SLEEP_LATENCY], 8);
    EXPECT_EQ(params[Params::MATRIX_SIZE_B], 1);
    EXPECT_EQ(params[Params::PORT_WIDTH_A], 72);
    EXPECT_EQ(params[Params::ECC_WR_ENABLE_B], "NO");
    EXPECT_THAT(params[Params::SLEEP_RATE_FINAL], IsBits(0.0f));
    EXPECT_THAT(params[Params::READ_RATE_A], IsBits(0.125f));
    EXPECT_THAT(params[Params::WRITE_RATE_A], IsBits(0.125f));
    EXPECT_THAT(params[Params::ACTIVE_RATE], IsBits(0.5f));
    EXPECT_THAT(params[Params::STBY_RATE], IsBits(0.5f));
}

TEST_F(PlamTest, ALargeCascadeHasNoRegisterPerMemory)
{
    params[Params::CASCADE_GROUP_SIZE] = 12;
    calculate();
    EXPECT_EQ(params[Params::LATENCY], 4);
    EXPECT_EQ(params[Params::AVG_INACTIVE_CYCLES], 10);
    EXPECT_EQ(params[Params::MATRIX_SIZE_A], 12);
    EXPECT_THAT(params[Params::REG_CAS_USED_A], IsBits(0.0f)); // the integer quotient of 4 by 12
    EXPECT_THAT(params[Params::READ_RATE_B], IsBits(0.125f / 12.0f));
}

TEST_F(PlamTest, LatencyAndIdleCyclesGrowWithTheCascade)
{
    struct Row {
        int memories, latency, idleCycles;
    };
    for (const Row& row : {Row{0, 0, 10}, Row{1, 1, 10}, Row{3, 1, 10}, Row{4, 2, 10}, Row{12, 4, 10}, Row{13, 5, 11},
                           Row{16, 6, 14}, Row{-4, -1, 10}}) {
        params.reset();
        params[Params::CASCADE_GROUP_SIZE] = row.memories;
        calculate();
        EXPECT_EQ(params[Params::LATENCY], row.latency) << row.memories;
        EXPECT_EQ(params[Params::AVG_INACTIVE_CYCLES], row.idleCycles) << row.memories;
        EXPECT_EQ(params[Params::IS_CASCADED_SOFAR], row.latency >= 1 ? "YES" : "NO") << row.memories;
    }
}

TEST_F(PlamTest, ACascadeOfNothingIsGuarded)
{
    params[Params::CASCADE_GROUP_SIZE] = 0;
    params[Params::LATENCY] = 5;
    params[Params::AUTO_SLEEP_ENABLED] = "YES";
    params[Params::MODE] = "ECC";
    calculate();
    EXPECT_THAT(params[Params::REG_CAS_USED_A], IsBits(0.0f));
    EXPECT_THAT(params[Params::READ_RATE_A], IsBits(0.125f));    // spread over at least one memory
    EXPECT_THAT(params[Params::SLEEP_RATE_FINAL], IsBits(1.0f)); // a is 1, b is 0
    // Neither reading nor decoding, whose quotients have no divisor: (2 + 64) x TRI x 4, and TRI is 24.5 / 196.
    EXPECT_THAT(params[Params::PRW1_DATA_VCCINT], IsBits(66.0f * 0.125f * 4.0f));
}

TEST_F(PlamTest, PortWidthsHoldTheDataWidths)
{
    struct Row {
        int dataWidth, portWidth;
    };
    for (const Row& row : {Row{9, 9}, Row{10, 18}, Row{18, 18}, Row{19, 36}, Row{20, 36}, Row{36, 36}, Row{37, 72},
                           Row{72, 72}, Row{144, 72}, Row{0, 9}}) {
        params.reset();
        params[Params::DATA_WIDTH_A] = params[Params::DATA_WIDTH_B] = row.dataWidth;
        calculate();
        EXPECT_EQ(params[Params::PORT_WIDTH_A], row.portWidth) << row.dataWidth;
        EXPECT_EQ(params[Params::PORT_WIDTH_B], row.portWidth) << row.dataWidth;
    }
}

TEST_F(PlamTest, PortWidthsScaleStandbyAndPortClocks)
{
    useUnitFactors();
    calculate();
    EXPECT_THAT(params[Params::PORT_WIDTH_SCALE], IsBits(1.0f));
    const float wide = params[Params::VCCINT_ACTIVE_POWER];
    // Port A's 0.125 x 22 + 34 x 0.125 = 7 halves, and the standby clock of 64, there in all cycles, goes to 48.
    params[Params::PORT_WIDTH_A] = 36;
    calculate();
    EXPECT_THAT(params[Params::PORT_WIDTH_SCALE], IsBits(0.75f));
    EXPECT_THAT(params[Params::VCCINT_ACTIVE_POWER], IsBits(wide - 3.5f - 16.0f));
    params[Params::PORT_WIDTH_B] = 9;
    calculate();
    EXPECT_THAT(params[Params::PORT_WIDTH_SCALE], IsBits(0.25f));
    EXPECT_THAT(params[Params::VCCINT_ACTIVE_POWER], IsBits(wide - 7.0f - 48.0f));
}

TEST_F(PlamTest, DefaultsByHand)
{
    useUnitFactors();
    calculate();
    EXPECT_THAT(params[Params::TR_ADDR], IsBits(0.125f));
    EXPECT_THAT(params[Params::TRI_FINAL], IsBits(0.125f)); // (9 + 9 + 6.5) / 196
    EXPECT_THAT(params[Params::TR_STDBY], IsBits(0.125f));
    EXPECT_THAT(params[Params::TRO_FINAL], IsBits(0.125f)); // 144 x 0.125 / 144
    EXPECT_THAT(params[Params::REG_CAS_SCALE_FACTOR], IsBits(2.0f));
    EXPECT_THAT(params[Params::PRD1_CLK_VCCINT_A], IsBits(22.0f));       // 16 + 4 + 1 x 2
    EXPECT_THAT(params[Params::PWR1_CLK_VCCINT_B], IsBits(34.0f));       // 32 + 1 x 2
    EXPECT_THAT(params[Params::PSTBY_VCCINT], IsBits(72.0f));            // 64 + 8 x 0.125 x 4 x 2
    EXPECT_THAT(params[Params::PSTBY_RW_VCCINT], IsBits(72.0f));         // 64 + 2 x 0.125 x 4 x 8
    EXPECT_THAT(params[Params::PSTBYPG_VCCINT], IsBits(6.0f));           // 4 + 2 x 0.125 x 4 x 2
    EXPECT_THAT(params[Params::PCASPIPE_IN_VCCINT], IsBits(1029.0f));    // 5 + 0.125 x 2048 x 4
    EXPECT_THAT(params[Params::PCASPIPE_RDOUT_VCCINT], IsBits(2055.0f)); // 7 + 0.125 x 4096 x 4
    EXPECT_THAT(params[Params::PCAS_IN_VCCINT], IsBits(256.0f));         // 0.125 x 512 x 4
    EXPECT_THAT(params[Params::PCAS_RDOUT_VCCINT], IsBits(512.0f));      // 0.125 x 1024 x 4
    // (1 + 3) x 0.125 / 0.25 + 2 x 0.125 x 4 + 8 x 0.125 x 4
    EXPECT_THAT(params[Params::PRW1_DATA_VCCINT], IsBits(7.0f));
    // 2 ports x (0.125 x 22 + 34 x 0.125) + 72 x 0.5 + 72 x 0.5 + 2 x 7; no cascade
    EXPECT_THAT(params[Params::VCCINT_ACTIVE_POWER], IsBits(14.0f + 72.0f + 14.0f));
    // (2 x 0.125 x (8 + 16) + 0.5 x 1 + 0.5 x 1) x 0.5
    EXPECT_THAT(params[Params::VCCRAM_ACTIVE_POWER], IsBits(3.5f));
}

TEST_F(PlamTest, SleepIsPricedByItsPhases)
{
    useUnitFactors();
    params[Params::SLEEP_RATE] = 0.5f;
    params[Params::AVG_INACTIVE_CYCLES] = 8;
    calculate();
    // (256 + 72) x 2/8 + 72 x 1/8 + 6 x 5/8
    EXPECT_THAT(params[Params::PSLP_VCCINT], IsBits(82.0f + 9.0f + 3.75f));
    EXPECT_THAT(params[Params::PSLP_VBRAM], IsBits(1.375f)); // (1 + 4) x 2/8 + 1 x 1/8, and no third term
    // As with the defaults, but half of all cycles asleep and none standing by.
    EXPECT_THAT(params[Params::STBY_RATE], IsBits(FLT_MIN));
    EXPECT_THAT(params[Params::VCCINT_ACTIVE_POWER], IsBits(14.0f + 36.0f + 47.375f + 14.0f));
    EXPECT_THAT(params[Params::VCCRAM_ACTIVE_POWER], IsBits((6.0f + 0.5f + 0.6875f) * 0.5f));
    params[Params::AVG_INACTIVE_CYCLES] = 0;
    calculate();
    EXPECT_THAT(params[Params::PSLP_VCCINT], IsBits(6.0f)); // the power-gated share is 1
    EXPECT_THAT(params[Params::PSLP_VBRAM], IsBits(0.0f));
}

TEST_F(PlamTest, SleepFractionsAreRoundedBeforeTheyMultiply)
{
    params[Params::AVG_INACTIVE_CYCLES] = 7;
    calculate();
    const float twoSevenths = 2.0f / 7.0f, seventh = 1.0f / 7.0f;
    EXPECT_THAT(params[Params::PSLP_VBRAM], IsBits(5.0f * twoSevenths + seventh));
    const float sleeping = 1.0f - 3.0f / 7.0f;
    EXPECT_THAT(params[Params::PSLP_VCCINT], IsBits(328.0f * twoSevenths + 72.0f * seventh + 6.0f * sleeping));
}

TEST_F(PlamTest, AutoSleepFillsTheIdleCycles)
{
    params[Params::AUTO_SLEEP_ENABLED] = "YES";
    params[Params::SLEEP_RATE] = 0.9f; // not read then
    params[Params::ENABLE_RATE_A] = 0.5f;
    params[Params::ENABLE_RATE_B] = 0.25f;
    params[Params::MATRIX_SIZE_A] = 4;
    params[Params::MATRIX_SIZE_B] = 2;
    calculate();
    EXPECT_THAT(params[Params::SLEEP_RATE_FINAL], IsBits(0.75f)); // (1 - 0.5 / 4) - 0.25 / 2
    params[Params::AUTO_SLEEP_ENABLED] = "yes";
    calculate();
    EXPECT_THAT(params[Params::SLEEP_RATE_FINAL], IsBits(0.9f));
}

TEST_F(PlamTest, ABusyMemoryHardlySleeps)
{
    params[Params::AUTO_SLEEP_ENABLED] = "YES";
    params[Params::ENABLE_RATE_A] = 0.75f;
    params[Params::ENABLE_RATE_B] = 0.5f;
    calculate();
    EXPECT_THAT(params[Params::SLEEP_RATE_FINAL], IsBits(FLT_MIN)) << "MAX of nothing positive";
}

TEST_F(PlamTest, IdlePeriodsShorterThanTheSleepLatencyKeepItAwake)
{
    params[Params::AUTO_SLEEP_ENABLED] = "YES";
    params[Params::AUTO_SLEEP_LATENCY] = 11;
    params[Params::SLEEP_RATE] = 0.5f;
    calculate();
    EXPECT_THAT(params[Params::SLEEP_RATE_FINAL], IsBits(0.0f));
    params[Params::AUTO_SLEEP_LATENCY] = 10;
    calculate();
    EXPECT_THAT(params[Params::SLEEP_RATE_FINAL], IsBits(0.5f)); // 1 - 0.25 - 0.25
}

TEST_F(PlamTest, SleepLimitsTheActiveRate)
{
    params[Params::SLEEP_RATE] = 0.5f;
    params[Params::ENABLE_RATE_A] = params[Params::ENABLE_RATE_B] = 0.75f;
    calculate();
    EXPECT_THAT(params[Params::SLEEP_RATE_FINAL], IsBits(0.5f));
    EXPECT_THAT(params[Params::ACTIVE_RATE], IsBits(0.5f));
    EXPECT_THAT(params[Params::STBY_RATE], IsBits(FLT_MIN)) << "MAX of nothing positive";
}

TEST_F(PlamTest, ModeEccTurnsOnWhatTheHostLeavesUnset)
{
    params[Params::MODE] = "ECC";
    params[Params::ECC_RD_ENABLE_A] = "NO";
    calculate();
    EXPECT_EQ(params[Params::ECC_RD_ENABLE_A], "NO");
    EXPECT_EQ(params[Params::ECC_RD_ENABLE_B], "YES");
    EXPECT_EQ(params[Params::ECC_WR_ENABLE_A], "YES");
    EXPECT_EQ(params[Params::ECC_WR_ENABLE_B], "YES");
}

TEST_F(PlamTest, EitherPortPaysForItsErrorCorrection)
{
    struct Row {
        Params::StringEnum enable;
        float current;
    };
    const float without = 7.0f;
    for (const Row& row :
         {Row{Params::ECC_WR_ENABLE_A, 32.0f}, Row{Params::ECC_WR_ENABLE_B, 32.0f},    // 64 x 0.125 x 4
          Row{Params::ECC_RD_ENABLE_A, 64.0f}, Row{Params::ECC_RD_ENABLE_B, 64.0f}}) { // 0.125 x 128 / 0.25
        params.reset();
        params[row.enable] = "YES";
        calculate();
        EXPECT_THAT(params[Params::PRW1_DATA_VCCINT], IsBits(without + row.current))
            << Params::enum_to_string(row.enable);
    }
}

TEST_F(PlamTest, TheInputRegisterBelongsToASingleMemoryWithExactlyOne)
{
    params[Params::REG_CAS_USED_A] = 0.5f;
    params[Params::REG_CAS_USED_B] = 1.0f;
    calculate();
    EXPECT_THAT(params[Params::PRW1_DATA_VCCINT], IsBits(7.0f));
    EXPECT_THAT(params[Params::PRD1_CLK_VCCINT_A], IsBits(21.0f)); // half a register: 16 + 4 + 0.5 x 2
    params[Params::REG_CAS_USED_B] = 2.0f;
    calculate();
    EXPECT_THAT(params[Params::PRW1_DATA_VCCINT], IsBits(3.0f)); // without 8 x 0.125 x 4
    params[Params::MATRIX_SIZE_B] = 2;
    calculate();
    EXPECT_THAT(params[Params::PRD1_CLK_VCCINT_B], IsBits(20.0f));
    EXPECT_THAT(params[Params::PWR1_CLK_VCCINT_B], IsBits(32.0f));
}

TEST_F(PlamTest, WritesOnOnePortToggleThatPortAlone)
{
    params[Params::DATA_WIDTH_A] = 18;
    params[Params::DATA_WIDTH_B] = 46;
    params[Params::INPUT_TOGGLE_RATE] = 0.5f;
    params[Params::WRITE_ENABLE_A] = 0.0f;
    calculate();
    EXPECT_THAT(params[Params::TRI_FINAL], IsBits(49.0f / 196.0f)); // 0.5 x 46 + 52 x 0.5
    params[Params::WRITE_ENABLE_B] = 0.0f;
    calculate();
    EXPECT_THAT(params[Params::TRI_FINAL], IsBits(26.0f / 196.0f)); // the address still toggles
    params[Params::WRITE_ENABLE_A] = 0.125f;
    calculate();
    EXPECT_THAT(params[Params::TRI_FINAL], IsBits(35.0f / 196.0f)); // 18 x 0.5 + 52 x 0.5
    params[Params::WRITE_ENABLE_B] = 0.125f;
    calculate();
    EXPECT_THAT(params[Params::TRI_FINAL], IsBits(58.0f / 196.0f));
}

TEST_F(PlamTest, OnlyPortsThatReadToggleTheOutputs)
{
    params[Params::DATA_WIDTH_A] = 36;
    params[Params::DATA_WIDTH_B] = 72;
    params[Params::OUTPUT_TOGGLE_RATE] = 0.5f;
    calculate();
    EXPECT_THAT(params[Params::TRO_FINAL], IsBits(0.375f)); // 108 x 0.5 / 144
    params[Params::WRITE_ENABLE_A] = 1.0f;
    calculate();
    EXPECT_THAT(params[Params::TRO_FINAL], IsBits(0.25f)); // 72 x 0.5 / 144
    params[Params::WRITE_ENABLE_B] = 1.0f;
    calculate();
    EXPECT_THAT(params[Params::TRO_FINAL], IsBits(0.0f)); // nothing reads
    params[Params::WRITE_ENABLE_A] = 0.0f;
    calculate();
    EXPECT_THAT(params[Params::TRO_FINAL], IsBits(0.125f)); // 36 x 0.5 / 144
}

TEST_F(PlamTest, WithoutCascadeRegistersNothingIsScaled)
{
    params[Params::IS_CASCADED_SOFAR] = "NO";
    calculate();
    EXPECT_THAT(params[Params::REG_CAS_SCALE_FACTOR], IsBits(1.0f));
    EXPECT_THAT(params[Params::PSTBY_VCCINT], IsBits(68.0f)); // 64 + 8 x 0.125 x 4
    Params byHand;
    byHand[Params::IS_CASCADED_SOFAR] = "NO";
    byHand[Params::REG_CAS_SCALE_FACTOR] = 10.0f;
    EXPECT_THAT(model.calculatePstbyRwVccint(byHand, Data::getGlobal()), IsBits(68.0f));
}

TEST_F(PlamTest, ACascadePaysForItsWires)
{
    useUnitFactors();
    params[Params::CASCADE_GROUP_SIZE] = 2;
    params[Params::MATRIX_SIZE_A] = params[Params::MATRIX_SIZE_B] = 1; // rates as in the default case
    params[Params::REG_CAS_USED_A] = 1.0f;
    params[Params::REG_CAS_USED_B] = 0.0f;
    calculate();
    // Data path: 4 x 0.125 / 0.5 + 2 x 0.125 x 4 = 2. Port B has no input register: 2 x 0.125 x 2 less.
    // Cascade: (2 - 1 - 0) x (512 + 256) + (1029 + 2055) x (1 + 0).
    EXPECT_THAT(params[Params::VCCINT_ACTIVE_POWER], IsBits(13.5f + 72.0f + 4.0f + 768.0f + 3084.0f));
}

TEST_F(PlamTest, VoltageActsToThePower2Point3AndTheClockLinearly)
{
    useUnitFactors();
    params[Params::VCCINT] = 1.0f;
    params[Params::VCCRAM] = 0.125f;
    params[Params::CLOCK_FREQ] = 500.0f;
    calculate();
    constexpr double twoTo2Point3 = 4.924577653379664; // 4 x the tenth root of 8
    EXPECT_THAT(params[Params::VCCINT_ACTIVE_POWER], IsBits(static_cast<float>(100.0 * 0.25 * twoTo2Point3)));
    EXPECT_THAT(params[Params::VCCRAM_ACTIVE_POWER], IsBits(static_cast<float>(7.0 * 0.125 / twoTo2Point3)));
}

TEST_F(PlamTest, AllMemoriesAreSoManyTimesOne)
{
    params[Params::NUM_PLAMS] = 7;
    calculate();
    EXPECT_GT(params[Params::VCCINT_ACTIVE_POWER], 0.0f);
    EXPECT_THAT(params[Params::VCCINT_PWR_N_PLAMS], IsBits(params[Params::VCCINT_ACTIVE_POWER] * 7.0f));
    EXPECT_THAT(params[Params::VCCRAM_PWR_N_PLAMS], IsBits(params[Params::VCCRAM_ACTIVE_POWER] * 7.0f));
}

TEST_F(PlamTest, ASimulationVoltageOfZeroGivesZero)
{
    load("DYNAMIC_CURRENTS : { PSTBY : { VCCRAM = 1.0; }; }; SCALE_FACTORS : { SIM_VOLTAGE : { VCCINT = 0.0; VCCRAM = "
         "0.0; }; };");
    params[Params::ENABLE_RATE_A] = params[Params::ENABLE_RATE_B] = 0.0f;
    params[Params::AVG_INACTIVE_CYCLES] = 0; // 0 x what is missing
    calculate();
    EXPECT_THAT(params[Params::VCCRAM_ACTIVE_POWER], IsBits(0.0f));
}

TEST_F(PlamTest, AMissingRowFlowsOn)
{
    load("DYNAMIC_CURRENTS : { PSTBY : { VCCINT_CLK = 1.0; }; }; SCALE_FACTORS : { REG_CAS_SCALE = 1.0; };");
    calculate();
    EXPECT_TRUE(std::isinf(params[Params::PRD1_CLK_VCCINT_A])); // three times FLT_MAX
    EXPECT_FALSE(std::isfinite(params[Params::VCCINT_ACTIVE_POWER]));
}

TEST(Plam, ShippedDataGiveTensOfMilliwattsPerMemory)
{
    const Params params = calculateShipped<ZelmOrvanePlamModel>();
    EXPECT_GT(params[Params::VCCINT_PWR_N_PLAMS], 0.005f);
    EXPECT_LT(params[Params::VCCINT_PWR_N_PLAMS], 0.03f);
    EXPECT_GT(params[Params::VCCRAM_PWR_N_PLAMS], 0.001f);
    EXPECT_LT(params[Params::VCCRAM_PWR_N_PLAMS], 0.01f);
    Params asleep;
    asleep[Params::ENABLE_RATE_A] = asleep[Params::ENABLE_RATE_B] = 0.0f;
    asleep[Params::SLEEP_RATE] = 1.0f;
    asleep[Params::AVG_INACTIVE_CYCLES] = 1000;
    asleep = calculateShipped<ZelmOrvanePlamModel>(asleep);
    Params idle;
    idle[Params::ENABLE_RATE_A] = idle[Params::ENABLE_RATE_B] = 0.0f;
    idle = calculateShipped<ZelmOrvanePlamModel>(idle);
    EXPECT_LT(asleep[Params::VCCINT_ACTIVE_POWER], 0.7f * idle[Params::VCCINT_ACTIVE_POWER]);
    EXPECT_LT(idle[Params::VCCINT_ACTIVE_POWER], params[Params::VCCINT_ACTIVE_POWER]);
}

} // namespace zelm::test::plamTest

#include "fabric/ZelmOrvaneCleLogicModel.h"

#include "support/BlockFixture.h"

#include <cfloat>
#include <set>

namespace zelm::test::cleLogicTest {

using Model = ZelmOrvaneCleLogicModel;
using Params = Model::Params;

constexpr std::string_view kTables = R"(
  LUT_CAP : { OP = 1.0; A1 = 2.0; A2 = 3.0; A3 = 4.0; A4 = 5.0; A6 = 7.0;
              A5_PIN = 6.0; A5_CAS = 8.0; A5_A6 = 16.0;
              A1INT = 1.0; A2INT = 2.0; A3INT = 4.0; A4INT = 8.0; A5INT = 16.0;
              C_LRAM = 10.0; C_SRL = 20.0; };
  REG_CAP : { REG_FF = 3.0; REG_LATCH = 5.0; };
  MISC_CAP : { OFMUX = 2.0; BYP = 4.0; };
  LOOKAHEAD_CAP : { COUTB = 1.0; COUTD = 2.0; COUTF = 3.0; COUTH = 5.0; };
)";

// The power at 1 V of a charge rate, narrowed as a cell does.
float atOneVolt(double capFreq)
{
    return static_cast<float>(capFreq * 0.001);
}

// The group's power of an element's.
float grouped(float elements)
{
    return static_cast<float>(static_cast<double>(elements) * 0.001);
}

// At 1 V; every signal toggles at 2 MHz and so cycles at 1 MHz unless a test says otherwise.
class CleLogicTest : public BlockFixture<Model> {
protected:
    CleLogicTest() : BlockFixture(kTables)
    {
        params[Params::VCCINT] = 1.0f;
        params[Params::CLOCK_FREQ] = 16.0f;
    }

    void calculate(std::string_view type)
    {
        params[Params::INSTANCE_TYPE] = type;
        BlockFixture::calculate();
    }
};

TEST(CleLogic, PinsTimesMetricsGiveTheCells)
{
    std::set<std::string> expected{"BYP_CAP_FREQ",   "LOOKAHEAD_CAP_FREQ", "LUT_CAP_FREQ",          "LUT_TESK_POWER",
                                   "OFMUX_CAP_FREQ", "MAX_INT_COMPONENT",  "MEMORY_WRITE_CAP_FREQ", "REG_CAP_FREQ",
                                   "TESK_LUT_CAP",   "TESK_LUT_INT_CAP",   "TESK_LUT_PIN_CAP"};
    for (const std::string pin :
         {"A1", "A2", "A3", "A4", "A5", "A6", "OP", "OFMUX", "BYP", "COUTB", "COUTD", "COUTF", "COUTH"}) {
        expected.insert(pin + "_FREQ");
        expected.insert(pin + "_PIN_COMPONENT");
        if (pin.front() == 'A')
            expected.insert(pin + "_INT_COMPONENT");
    }
    std::vector<std::string> names;
    Params::getFloatIntermediateCalculationNames(names);
    EXPECT_EQ(names, std::vector<std::string>(expected.begin(), expected.end()));
}

TEST_F(CleLogicTest, AFreshBlockIsALut)
{
    params.reset();
    BlockFixture::calculate();
    EXPECT_EQ(params[Params::INSTANCE_TYPE], "LUT_LOGIC");
    for (const auto cell :
         {Params::REG_INSTANCE_POWER, Params::BYP_INSTANCE_POWER, Params::BYP_COMPONENT,
          Params::LOOKAHEAD_INSTANCE_POWER, Params::LOOKAHEAD_COMPONENT, Params::MEMORY_WRITE_COMPONENT})
        EXPECT_THAT(params[cell], IsBits(0.0f)) << Params::enum_to_string(cell);
    EXPECT_THAT(params[Params::LOGIC_POWER], IsBits(grouped(params[Params::LUT_INSTANCE_POWER])));
    // 200 MHz x 0.125 = 25 MHz of toggles, 12.5 MHz of cycles. Pins 28 fF, nodes behind A1 31 fF, output multiplexer
    // 2 fF: 61 fF x 12.5 MHz x 0.5184 V^2 = 395.28 nW.
    EXPECT_NEAR(params[Params::LUT_INSTANCE_POWER], 0.39528, 1e-6);
    EXPECT_NEAR(params[Params::LOGIC_POWER], 0.39528e-3, 1e-9);
}

TEST_F(CleLogicTest, EveryUnsetSignalRateIsClockTimesToggleRate)
{
    calculate("LUT_LOGIC");
    int rates = 0;
    for (const ZelmCellInfo& cell : Params::cells())
        if (cell.name.ends_with("_SIG_RATE")) {
            EXPECT_THAT(params[Params::string_to_float_enum(std::string(cell.name))], IsBits(2.0f)) << cell.name;
            ++rates;
        }
    EXPECT_EQ(rates, 14);
}

TEST_F(CleLogicTest, ASetSignalRateWinsForItsPinOnly)
{
    params[Params::A1_SIG_RATE] = 6.0f;
    calculate("LUT_LOGIC");
    EXPECT_THAT(params[Params::A1_FREQ], IsBits(3.0f));
    EXPECT_THAT(params[Params::A2_FREQ], IsBits(1.0f));
    EXPECT_THAT(params[Params::A2_SIG_RATE], IsBits(2.0f));
    EXPECT_THAT(params[Params::A1_PIN_COMPONENT], IsBits(6.0f));  // 2 fF x 3 MHz
    EXPECT_THAT(params[Params::A1_INT_COMPONENT], IsBits(93.0f)); // (1 + 2 + 4 + 8 + 16) fF x 3 MHz
    EXPECT_THAT(params[Params::LUT_CAP_FREQ], IsBits(125.0f));    // 28 + 2 x 2 + 93
}

TEST_F(CleLogicTest, AnAddressPinDrivesItsOwnAndAllLaterNodes)
{
    calculate("LUT_LOGIC");
    EXPECT_THAT(params[Params::A1_INT_COMPONENT], IsBits(31.0f));
    EXPECT_THAT(params[Params::A2_INT_COMPONENT], IsBits(30.0f));
    EXPECT_THAT(params[Params::A3_INT_COMPONENT], IsBits(28.0f));
    EXPECT_THAT(params[Params::A4_INT_COMPONENT], IsBits(24.0f));
    EXPECT_THAT(params[Params::A5_INT_COMPONENT], IsBits(16.0f));
    EXPECT_THAT(params[Params::A6_INT_COMPONENT], IsBits(0.0f)); // no table has A6INT: a look-up would give FLT_MAX
    EXPECT_THAT(params[Params::MAX_INT_COMPONENT], IsBits(31.0f));
}

TEST_F(CleLogicTest, TheBusiestPinCountsForTheInternalNodes)
{
    params[Params::A3_SIG_RATE] = 4.0f;
    calculate("LUT_LOGIC");
    EXPECT_THAT(params[Params::MAX_INT_COMPONENT], IsBits(56.0f)); // A3: 28 fF x 2 MHz
}

TEST_F(CleLogicTest, QuietPinsLeaveTheSmallestPositiveFloat)
{
    params[Params::TOGGLE_RATE] = 0.0f;
    calculate("LUT_LOGIC");
    EXPECT_THAT(params[Params::A1_INT_COMPONENT], IsBits(0.0f));
    EXPECT_THAT(params[Params::MAX_INT_COMPONENT], IsBits(FLT_MIN));
    EXPECT_THAT(params[Params::LUT_CAP_FREQ], IsBits(FLT_MIN));
}

TEST_F(CleLogicTest, PowerGoesWithTheSquareOfTheSupply)
{
    params[Params::VCCINT] = 3.0f;
    calculate("LUT_LOGIC");
    EXPECT_THAT(params[Params::LUT_COMPONENT], IsBits(atOneVolt(9.0 * 59.0))); // pins 28, nodes 31
}

TEST_F(CleLogicTest, TheGroupCarriesASecondThousandth)
{
    params[Params::INSTANCE_COUNT] = 1000;
    calculate("REG_FF");
    EXPECT_NEAR(params[Params::REG_INSTANCE_POWER], 0.006, 1e-9); // 3 fF x 2 MHz x 0.001
    EXPECT_NEAR(params[Params::LOGIC_POWER], 0.006, 1e-9);        // x 1000 x 0.001
    EXPECT_NEAR(params[Params::TESK_LOGIC_POWER], 0.006, 1e-9);
}

TEST_F(CleLogicTest, AMemoryWritesAtTheClock)
{
    params[Params::LUT_WE_PROB] = 0.25f;
    params[Params::OP_SIG_RATE] = 1000.0f; // no part of a write
    calculate("LUT_DRAM");
    EXPECT_THAT(params[Params::MEMORY_WRITE_CAP_FREQ], IsBits(40.0f)); // 10 fF x 16 MHz x 0.25
    EXPECT_THAT(params[Params::MEMORY_WRITE_COMPONENT], IsBits(atOneVolt(40.0)));
    EXPECT_THAT(params[Params::LUT_INSTANCE_POWER],
                IsBits(params[Params::LUT_COMPONENT] + params[Params::OFMUX_COMPONENT] + atOneVolt(40.0)));
}

TEST_F(CleLogicTest, AShiftRegisterMovesWithItsOutput)
{
    params[Params::OP_SIG_RATE] = 3.0f;
    params[Params::CLOCK_FREQ] = 1000.0f; // no part of a shift
    calculate("LUT_SRL");
    EXPECT_THAT(params[Params::MEMORY_WRITE_CAP_FREQ], IsBits(30.0f)); // 20 fF x 3 MHz x 0.5
}

TEST_F(CleLogicTest, OtherLutsDontWrite)
{
    calculate("LUT_CARRY");
    EXPECT_THAT(params[Params::MEMORY_WRITE_CAP_FREQ], IsBits(0.0f));
    EXPECT_THAT(params[Params::LUT_CAP_FREQ], IsBits(59.0f)); // the prefix is enough for the pins
    EXPECT_THAT(params[Params::LOGIC_POWER], IsBits(grouped(atOneVolt(59.0) + atOneVolt(2.0))));
    EXPECT_THAT(params[Params::TESK_LOGIC_POWER], IsBits(0.0f)); // but not for the simple estimate
}

TEST_F(CleLogicTest, AnyRegisterTypeWorksButTheSimpleEstimateKnowsOne)
{
    calculate("REG_LATCH");
    EXPECT_THAT(params[Params::REG_CAP_FREQ], IsBits(10.0f)); // 5 fF x 2 MHz: the rate itself, not its half
    EXPECT_THAT(params[Params::LOGIC_POWER], IsBits(grouped(atOneVolt(10.0))));
    EXPECT_THAT(params[Params::TESK_LOGIC_POWER], IsBits(0.0f));
    EXPECT_THAT(params[Params::LUT_COMPONENT], IsBits(0.0f));
    calculate("REG_FF");
    EXPECT_THAT(params[Params::TESK_LOGIC_POWER], IsBits(grouped(atOneVolt(6.0))));
    EXPECT_THAT(params[Params::LOGIC_POWER], IsBits(grouped(atOneVolt(6.0))));
}

TEST_F(CleLogicTest, EachPrefixHasItsPower)
{
    calculate("OFMUX_WIDE");
    EXPECT_THAT(params[Params::LOGIC_POWER], IsBits(grouped(atOneVolt(3 * 2.0)))); // three multiplexers of 2 fF
    calculate("BYPASS");
    EXPECT_THAT(params[Params::LOGIC_POWER], IsBits(grouped(atOneVolt(4.0))));
    EXPECT_THAT(params[Params::BYP_COMPONENT], IsBits(params[Params::BYP_INSTANCE_POWER]));
    calculate("LOOKAHEAD8");
    EXPECT_THAT(params[Params::LOGIC_POWER], IsBits(grouped(atOneVolt(11.0)))); // 1 + 2 + 3 + 5
    EXPECT_THAT(params[Params::LOOKAHEAD_COMPONENT], IsBits(params[Params::LOOKAHEAD_INSTANCE_POWER]));
    calculate("LOOKAHEA"); // shorter than the prefix
    EXPECT_THAT(params[Params::LOGIC_POWER], IsBits(0.0f));
    calculate("lut_logic");
    EXPECT_THAT(params[Params::LOGIC_POWER], IsBits(0.0f));
}

TEST_F(CleLogicTest, AnUnknownTypeKeepsItsOutputMultiplexersOnly)
{
    params[Params::LUT_OFMUX_INSTANCE_COUNT] = 3;
    params[Params::BYP_OFMUX_INSTANCE_COUNT] = 5;
    params[Params::LOOKAHEAD_OFMUX_INSTANCE_COUNT] = 7;
    calculate("PAD");
    // 2 fF x 1 MHz a piece, in the sums of all three kinds too
    const std::map<std::string, float> expected{
        {"BYP_COMPONENT", 0.0f},
        {"BYP_INSTANCE_POWER", 0.0f},
        {"BYP_OFMUX_COMPONENT", atOneVolt(10.0)},
        {"BYP_POWER", atOneVolt(10.0)},
        {"LOGIC_POWER", 0.0f},
        {"LOOKAHEAD_COMPONENT", 0.0f},
        {"LOOKAHEAD_INSTANCE_POWER", 0.0f},
        {"LOOKAHEAD_OFMUX_COMPONENT", atOneVolt(14.0)},
        {"LOOKAHEAD_POWER", atOneVolt(14.0)},
        {"LUT_COMPONENT", 0.0f},
        {"LUT_INSTANCE_POWER", atOneVolt(6.0)},
        {"MEMORY_WRITE_COMPONENT", 0.0f},
        {"OFMUX_COMPONENT", atOneVolt(6.0)},
        {"OFMUX_INSTANCE_POWER", atOneVolt(30.0)},
        {"REG_INSTANCE_POWER", 0.0f},
        {"TESK_LOGIC_POWER", 0.0f},
    };
    std::vector<std::string> outputs;
    Params::getFloatModelOutputNames(outputs);
    ASSERT_EQ(outputs.size(), expected.size());
    for (const std::string& output : outputs)
        EXPECT_THAT(params[Params::string_to_float_enum(output)], IsBits(expected.at(output))) << output;
}

TEST_F(CleLogicTest, MultiplexerCountsWrap)
{
    params[Params::BYP_OFMUX_INSTANCE_COUNT] = 0x7ffffffe;
    calculate("OFMUX"); // 0x7ffffffe + 1 + 1 wraps to -2^31; x 2 fF x 1 MHz
    EXPECT_THAT(params[Params::OFMUX_INSTANCE_POWER], IsBits(atOneVolt(-4294967296.0)));
}

TEST_F(CleLogicTest, PinA5GoesByItsUse)
{
    params[Params::A5_PIN_TYPE] = "A5_CAS";
    calculate("LUT_LOGIC");
    EXPECT_THAT(params[Params::A5_PIN_COMPONENT], IsBits(8.0f));
    params[Params::A5_PIN_TYPE] = "C_SRL"; // any key of the table serves
    calculate("LUT_LOGIC");
    EXPECT_THAT(params[Params::A5_PIN_COMPONENT], IsBits(20.0f));
}

TEST_F(CleLogicTest, AnUnknownUseOfA5LetsTheSentinelFlowOn)
{
    params[Params::A5_PIN_TYPE] = "A5_NONE";
    calculate("LUT_LOGIC");
    EXPECT_THAT(params[Params::A5_PIN_COMPONENT], IsBits(zelm::unsetFloat)); // x 1 MHz
    EXPECT_GT(params[Params::LUT_COMPONENT], 1e35f);
    EXPECT_GT(params[Params::LOGIC_POWER], 1e32f);
}

TEST_F(CleLogicTest, TheSimpleEstimateTakesMeanPins)
{
    calculate("LUT_LOGIC");
    // 1 + (2 + 3 + 4 + 5 + 7 + mean of 6, 8 and 16) x 5/6 = 26.8333; (1 + 2x2 + 3x4 + 4x8 + 5x16) / 5 = 25.8
    EXPECT_NEAR(params[Params::TESK_LUT_PIN_CAP], 26.833332, 2e-6);
    EXPECT_THAT(params[Params::TESK_LUT_INT_CAP], IsBits(25.8f));
    EXPECT_NEAR(params[Params::TESK_LUT_CAP], 53.159666, 4e-6); // x 1.01
    // 53.1597 fF x 1 V^2 x 0.125 x 16 MHz x 0.5
    EXPECT_NEAR(params[Params::LUT_TESK_POWER], 0.053159666, 4e-9);
    EXPECT_THAT(params[Params::TESK_LOGIC_POWER], IsBits(grouped(params[Params::LUT_TESK_POWER])));
}

TEST_F(CleLogicTest, TheSimpleEstimateLooksAtNoSignalRate)
{
    calculate("LUT_LOGIC");
    const float before = params[Params::TESK_LOGIC_POWER];
    params[Params::A1_SIG_RATE] = 100.0f;
    params[Params::OP_SIG_RATE] = 100.0f;
    calculate("LUT_LOGIC");
    EXPECT_THAT(params[Params::TESK_LOGIC_POWER], IsBits(before));
}

TEST_F(CleLogicTest, TheSimpleEstimateAddsMemoryWrites)
{
    for (const auto& [type, write] : {std::pair{"LUT_DRAM", 80.0}, std::pair{"LUT_SRL", 20.0}}) {
        calculate(type);
        EXPECT_THAT(params[Params::TESK_LOGIC_POWER],
                    IsBits(grouped(params[Params::LUT_TESK_POWER] + atOneVolt(write))))
            << type;
    }
}

TEST(CleLogic, ShippedDataGiveBelievablePower)
{
    Params params;
    params[Params::CLOCK_FREQ] = 300.0f;
    params = calculateShipped<Model>(params);
    EXPECT_THAT(params[Params::LOGIC_POWER], testing::AllOf(testing::Gt(1e-3f), testing::Lt(6e-3f))); // 1 to 6 uW
    EXPECT_NEAR(params[Params::TESK_LOGIC_POWER] / params[Params::LOGIC_POWER], 1.0, 0.5);
    params[Params::INSTANCE_TYPE] = "LUT_DRAM";
    params = calculateShipped<Model>(params);
    EXPECT_THAT(params[Params::LOGIC_POWER], testing::AllOf(testing::Gt(3e-3f), testing::Lt(15e-3f)));
    for (const char* type : {"REG_FF", "REG_LATCH", "REG_IMUX", "OFMUX", "BYP", "LOOKAHEAD"}) {
        params[Params::INSTANCE_TYPE] = type;
        params = calculateShipped<Model>(params);
        EXPECT_THAT(params[Params::LOGIC_POWER], testing::AllOf(testing::Gt(5e-5f), testing::Lt(2e-3f))) << type;
    }
}

} // namespace zelm::test::cleLogicTest

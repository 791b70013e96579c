#include "framework/ZelmOrvaneSignalModel.h"

#include "support/BlockFixture.h"

#include <cmath>

namespace zelm::test::signalTest {

using Params = ZelmOrvaneSignalParams;

class SignalTest : public BlockFixture<ZelmOrvaneSignalModel> {
protected:
    SignalTest()
    {
        load(R"( PER_NODE_CAP : { OTHER = 1.0; LUT = 0.25; };)");
    }
};

TEST(Signal, EnumsHaveThePublishedOrdinals)
{
    EXPECT_EQ(Params::LastInt, 7);
    EXPECT_EQ(Params::LastFloat, 13);
    EXPECT_EQ(Params::LastString, 7);
    EXPECT_EQ(Params::VCCINT, 4);
    EXPECT_EQ(Params::SIGNAL_POWER, 7);
    EXPECT_EQ(Params::WIRE_CAPACITANCE, 11);
    EXPECT_EQ(Params::intEnumSource,
              "FirstUIInt, SIGNAL_COUNT,LastUIInt, FirstMOInt, LastMOInt, FirstICInt, LastICInt, LastInt");
}

TEST_F(SignalTest, DefaultsGiveNineNodes)
{
    calculate();
    EXPECT_THAT(params[Params::NUM_NODES_PER_SIGNAL], IsBits(9.0f)); // 10^(10/10) - 1
    EXPECT_THAT(params[Params::WIRE_CAPACITANCE], IsBits(9.0f));     // 9 nodes x 1 signal x 1 pF
    // 9 x 0.72 = 6.48, x 0.72 = 4.6656, x 0.125 = 0.5832, x 200 = 116.64, x 0.5 = 58.32, rounded at each step
    float power = 9.0f;
    for (const float factor : {0.72f, 0.72f, 0.125f, 200.0f, 0.5f})
        power *= factor;
    EXPECT_THAT(params[Params::SIGNAL_POWER], IsBits(power));
    EXPECT_NEAR(params[Params::SIGNAL_POWER], 58.32, 1e-4);
}

TEST_F(SignalTest, CalculateLeavesTheDefaultsInTheInputs)
{
    calculate();
    EXPECT_EQ(params[Params::SIGNAL_COUNT], 1);
    EXPECT_THAT(params[Params::CLOCK_FREQ], IsBits(200.0f));
    EXPECT_THAT(params[Params::ROUTING_COMPLEXITY], IsBits(10.0f));
    EXPECT_THAT(params[Params::TOGGLE_RATE], IsBits(0.125f));
    EXPECT_THAT(params[Params::VCCINT], IsBits(0.72f));
    EXPECT_EQ(params[Params::DRIVER_TYPE], "OTHER");
    EXPECT_THAT(model.getVccint(params, ZelmOrvaneSignalData::getGlobal()), IsBits(0.72f));
    params.resetUserInputs();
    EXPECT_THAT(params[Params::VCCINT], IsBits(zelm::unsetFloat));
}

TEST_F(SignalTest, NodesAreComputedInDouble)
{
    params[Params::ROUTING_COMPLEXITY] = 3.0f;
    calculate();
    // The quotient 3/10 is a float; 10 to the power 0.300000012 is 1.99526237..., less 1 in double.
    const double nodes = std::pow(10.0, static_cast<double>(3.0f / 10.0f)) - 1.0;
    EXPECT_THAT(params[Params::NUM_NODES_PER_SIGNAL], IsBits(static_cast<float>(nodes)));
    EXPECT_NEAR(params[Params::NUM_NODES_PER_SIGNAL], 0.99526237, 1e-7);
}

TEST_F(SignalTest, NoComplexityMeansNoPower)
{
    params[Params::ROUTING_COMPLEXITY] = 0.0f;
    calculate();
    EXPECT_THAT(params[Params::NUM_NODES_PER_SIGNAL], IsBits(0.0f));
    EXPECT_THAT(params[Params::SIGNAL_POWER], IsBits(0.0f));
}

TEST_F(SignalTest, ACountOfZeroIsAValue)
{
    params[Params::SIGNAL_COUNT] = 0;
    calculate();
    EXPECT_EQ(params[Params::SIGNAL_COUNT], 0);
    EXPECT_THAT(params[Params::SIGNAL_POWER], IsBits(0.0f));
}

TEST_F(SignalTest, AnUnknownDriverLetsTheSentinelFlowOn)
{
    params[Params::DRIVER_TYPE] = "NO_SUCH_DRIVER";
    calculate();
    EXPECT_TRUE(std::isinf(params[Params::WIRE_CAPACITANCE])); // 9 x FLT_MAX
    EXPECT_TRUE(std::isinf(params[Params::SIGNAL_POWER]));
}

TEST_F(SignalTest, AHandSetCellStaysUntilCalculate)
{
    params[Params::SIGNAL_POWER] = 5.0f;
    EXPECT_THAT(model.calculateSignalPower(params, ZelmOrvaneSignalData::getGlobal()), IsBits(5.0f));
    calculate();
    EXPECT_GT(params[Params::SIGNAL_POWER], 50.0f);
}

TEST_F(SignalTest, ACalculatedCellIsNotRecomputedByItself)
{
    calculate();
    const float before = params[Params::SIGNAL_POWER];
    params[Params::VCCINT] = 1.0f;
    EXPECT_THAT(model.calculateSignalPower(params, ZelmOrvaneSignalData::getGlobal()), IsBits(before));
    calculate();
    EXPECT_NEAR(params[Params::SIGNAL_POWER], 112.5, 1e-4); // 9 x 0.125 x 200 x 0.5
}

TEST_F(SignalTest, CalculateTwiceGivesTheSame)
{
    calculate();
    const std::string first = params.reflect();
    calculate();
    EXPECT_EQ(params.reflect(), first);
}

TEST_F(SignalTest, OtherDriversHaveTheirOwnCapacitance)
{
    params[Params::DRIVER_TYPE] = "LUT";
    calculate();
    EXPECT_THAT(params[Params::WIRE_CAPACITANCE], IsBits(2.25f)); // 9 x 0.25
}

} // namespace zelm::test::signalTest

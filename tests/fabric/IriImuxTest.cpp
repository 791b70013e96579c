#include "fabric/ZelmOrvaneIriImuxModel.h"

#include "support/BlockFixture.h"

namespace zelm::test::iriImuxTest {

using Model = ZelmOrvaneIriImuxModel;
using Params = Model::Params;

std::string tables(std::string_view factor)
{
    return R"(
  CURRENT : { LATCH  = { SLOPE = 20.0; CONST = 500.0; COUNT = 4.0; };
              BYPASS = { SLOPE = 10.0; CONST = 200.0; COUNT = 8.0; };
              NONE   = { SLOPE = 10.0; CONST = 200.0; COUNT = 0.0; }; };
  FACTOR : {)" +
           std::string(factor) + "};";
}

// At 100 MHz and 1 V; the currents are doubled from 0.5 V to 1 V.
class IriImuxTest : public BlockFixture<Model> {
protected:
    IriImuxTest() : BlockFixture(tables("SIM_VOLTAGE = 0.5;"))
    {
        params[Params::OP_SIGNAL_RATE] = 100.0f;
        params[Params::VCCINT] = 1.0f;
    }
};

TEST_F(IriImuxTest, Defaults)
{
    params.reset();
    calculate();
    EXPECT_EQ(params[Params::MODE], "LATCH");
    EXPECT_NEAR(params[Params::ONE_IMUX_CURRENT], 1.125e-3, 1e-9); // (20 x 200 + 500) / 4 = 1125 nA
    EXPECT_NEAR(params[Params::IMUX_POWER], 1.1664e-3, 1e-9);      // x 0.72 V x 0.72 / 0.5
}

TEST_F(IriImuxTest, TheMeasuredCurrentIsOneOfManyMultiplexers)
{
    calculate();
    EXPECT_NEAR(params[Params::ONE_IMUX_CURRENT], 625e-6, 1e-10); // (20 x 100 + 500) / 4
    params[Params::MODE] = "BYPASS";
    calculate();
    EXPECT_NEAR(params[Params::ONE_IMUX_CURRENT], 150e-6, 1e-10); // (10 x 100 + 200) / 8
    params[Params::NUM_IMUX] = 1000;
    calculate();
    EXPECT_NEAR(params[Params::IMUX_POWER], 0.3, 1e-7); // 1000 x 0.15 uA x 1 V x 2
    params[Params::VCCINT] = 2.0f;
    calculate();
    EXPECT_NEAR(params[Params::IMUX_POWER], 1.2, 4e-7); // the square of the supply
}

TEST_F(IriImuxTest, ACountOfZeroMeansNoCurrent)
{
    params[Params::MODE] = "NONE";
    calculate();
    EXPECT_THAT(params[Params::ONE_IMUX_CURRENT], IsBits(0.0f));
    EXPECT_THAT(params[Params::IMUX_POWER], IsBits(0.0f));
}

TEST_F(IriImuxTest, AnUnknownModeIsNoError)
{
    params[Params::MODE] = "NO_SUCH_MODE";
    params[Params::OP_SIGNAL_RATE] = 0.5f;
    calculate();
    // Half the sentinel and the sentinel overflow single precision before the division.
    EXPECT_THAT(params[Params::ONE_IMUX_CURRENT], IsBits(INFINITY));
    EXPECT_THAT(params[Params::IMUX_POWER], IsBits(INFINITY));
    params[Params::OP_SIGNAL_RATE] = 0.0f;
    calculate();
    // The sentinel by itself: a nanoampere, in milliamperes.
    EXPECT_NEAR(params[Params::ONE_IMUX_CURRENT], 1e-6, 1e-12);
}

TEST_F(IriImuxTest, ASimulatedVoltageOfZeroGivesNoPower)
{
    load(tables("SIM_VOLTAGE = 0.0;"));
    calculate();
    EXPECT_GT(params[Params::ONE_IMUX_CURRENT], 0.0f);
    EXPECT_THAT(params[Params::IMUX_POWER], IsBits(0.0f));
}

TEST_F(IriImuxTest, AMissingSimulatedVoltageGivesATinyRatio)
{
    load(tables(""));
    params[Params::NUM_IMUX] = 1000000;
    calculate();
    EXPECT_NEAR(params[Params::IMUX_POWER] * 1e36f, 1.8367, 1e-4); // 625 mA x 1 V / FLT_MAX
}

TEST(IriImux, ShippedDataGiveBelievablePower)
{
    for (const char* mode : {"LATCH", "BYPASS", "REGISTER"}) {
        Params params;
        params[Params::MODE] = mode;
        params = calculateShipped<Model>(params);
        EXPECT_THAT(params[Params::IMUX_POWER], testing::AllOf(testing::Gt(1e-3f), testing::Lt(8e-3f))) << mode; // mW
    }
}

} // namespace zelm::test::iriImuxTest

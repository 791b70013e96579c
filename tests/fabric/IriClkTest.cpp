#include "fabric/ZelmOrvaneIriClkModel.h"

#include "support/BlockFixture.h"

namespace zelm::test::iriClkTest {

using Model = ZelmOrvaneIriClkModel;
using Params = Model::Params;

constexpr std::string_view kCurrents = R"(
  CURRENT : {
    MC_INV       = { SLOPE = 1.0; CONST = 50.0; };
    CLK_OPT_INV  = { SLOPE = 2.0; CONST = 60.0; };
    CTRL_TST_MUX = { SLOPE = 4.0; CONST = 90.0; };
    PDELAY_ON_LATCH_USED  = { SLOPE = 20.0; CONST = 1000.0; };
    PDELAY_ON_BYPASS_ONLY = { SLOPE = 10.0; CONST = 200.0; };
  };
  CAPACITANCE : { CTRLMUX = 3.0; CNODE = 5.0; };
)";

std::string tables(std::string_view factor)
{
    return std::string(kCurrents) + "  FACTOR : {" + std::string(factor) + "};";
}

// At 100 MHz and 1 V. A line gives 150 + 260 + 490 = 900 nA for every quad, 3000 nA more with its latches used, 1200 nA
// more without. The quads' currents are doubled from 0.5 V to 1 V.
class IriClkTest : public BlockFixture<Model> {
protected:
    IriClkTest() : BlockFixture(tables("SIM_VOLTAGE = 0.5;"))
    {
        params[Params::CLOCK_FREQ] = 100.0f;
        params[Params::VCCINT] = 1.0f;
    }
};

TEST_F(IriClkTest, AFreshBlockIsOneLatchedQuad)
{
    params.reset();
    calculate();
    EXPECT_EQ(params[Params::NUM_LATCHED_QUADS_PDELAY_ON], 1);
    EXPECT_EQ(params[Params::NUM_BYPASS_QUADS_PDELAY_ON], 0);
    EXPECT_EQ(params[Params::NON_CLE_SITE_FANOUT], 0);
    EXPECT_THAT(params[Params::CNODE_CTRLMUX_CLOCK_POWER], IsBits(0.0f));
    EXPECT_THAT(params[Params::CLOCK_POWER], IsBits(params[Params::IRI_CLOCK_POWER]));
    // At 200 MHz: 7 x 200 + 200 = 1600 nA, 20 x 200 + 1000 = 5000 nA; 6.6 uA x 0.72 V x 0.72 / 0.5
    EXPECT_NEAR(params[Params::CLOCK_POWER], 6.84288e-3, 1e-8);
}

TEST_F(IriClkTest, CurrentsAreLinesOverFrequency)
{
    calculate();
    EXPECT_NEAR(params[Params::CURRENT_MODE_INDEPENDENT], 900e-6, 1e-10);
    EXPECT_NEAR(params[Params::CURRENT_PDELAY_ON_LATCH_USED], 3000e-6, 1e-10);
    EXPECT_NEAR(params[Params::CURRENT_PDELAY_ON_BYPASS_ONLY], 1200e-6, 1e-10);
    params[Params::CLOCK_FREQ] = 0.0f;
    calculate();
    EXPECT_NEAR(params[Params::CURRENT_MODE_INDEPENDENT], 200e-6, 1e-10);
}

TEST_F(IriClkTest, BothKindsOfQuadsCarryTheModeIndependentCurrent)
{
    const auto expectPower = [&](int latched, int bypassed, double power) {
        params[Params::NUM_LATCHED_QUADS_PDELAY_ON] = latched;
        params[Params::NUM_BYPASS_QUADS_PDELAY_ON] = bypassed;
        calculate();
        EXPECT_NEAR(params[Params::IRI_CLOCK_POWER], power, 1e-8) << latched << " latched, " << bypassed;
    };
    expectPower(0, 0, 0.0);
    expectPower(1, 0, 7.8e-3);                  // 2 x 3.9 uA
    expectPower(0, 1, 4.2e-3);                  // 2 x 2.1 uA
    expectPower(2, 3, 2 * 7.8e-3 + 3 * 4.2e-3); // once per quad
}

TEST_F(IriClkTest, PowerGoesWithTheSquareOfTheSupply)
{
    params[Params::VCCINT] = 2.0f;
    params[Params::NON_CLE_SITE_FANOUT] = 10;
    calculate();
    EXPECT_NEAR(params[Params::IRI_CLOCK_POWER], 4 * 7.8e-3, 1e-8);
    EXPECT_NEAR(params[Params::CNODE_CTRLMUX_CLOCK_POWER], 4 * 8e-3, 1e-8); // 8 fF x 100 MHz x 10 loads = 8 uA/V
    EXPECT_THAT(params[Params::CLOCK_POWER],
                IsBits(params[Params::IRI_CLOCK_POWER] + params[Params::CNODE_CTRLMUX_CLOCK_POWER]));
}

TEST_F(IriClkTest, ASimulatedVoltageOfZeroGivesNoQuadPower)
{
    load(tables("SIM_VOLTAGE = 0.0;"));
    params[Params::NON_CLE_SITE_FANOUT] = 10;
    calculate();
    EXPECT_THAT(params[Params::IRI_CLOCK_POWER], IsBits(0.0f));
    EXPECT_NEAR(params[Params::CLOCK_POWER], 8e-3, 1e-8); // the other loads don't look at it
}

TEST_F(IriClkTest, AMissingSimulatedVoltageGivesATinyRatio)
{
    load(tables(""));
    calculate();
    EXPECT_LT(params[Params::IRI_CLOCK_POWER], 1e-38f);
    params[Params::NUM_LATCHED_QUADS_PDELAY_ON] = 1000000;
    calculate();
    EXPECT_NEAR(params[Params::IRI_CLOCK_POWER] * 1e35f, 1.1461, 1e-4); // tiny, not none: 3900 mA x 1 V / FLT_MAX
}

TEST(IriClk, ShippedDataGiveBelievablePower)
{
    Params params;
    params = calculateShipped<Model>(params);
    EXPECT_THAT(params[Params::CLOCK_POWER], testing::AllOf(testing::Gt(4e-3f), testing::Lt(60e-3f))); // a quad, mW
    params[Params::NUM_LATCHED_QUADS_PDELAY_ON] = 0;
    params[Params::NUM_BYPASS_QUADS_PDELAY_ON] = 1;
    const float latched = params[Params::CLOCK_POWER];
    params = calculateShipped<Model>(params);
    EXPECT_LT(params[Params::CLOCK_POWER], latched);
    params[Params::NON_CLE_SITE_FANOUT] = 1000;
    params = calculateShipped<Model>(params);
    EXPECT_THAT(params[Params::CNODE_CTRLMUX_CLOCK_POWER], testing::AllOf(testing::Gt(0.2f), testing::Lt(5.0f)));
}

} // namespace zelm::test::iriClkTest

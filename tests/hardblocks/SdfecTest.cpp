#include "hardblocks/ZelmOrvaneSdfecModel.h"

#include "support/BlockFixture.h"

namespace zelm::test::sdfecTest {

using Params = ZelmOrvaneSdfecParams;
using Sdfec = ZelmOrvaneSdfecModel;
using SdfecShippedData = ShippedBlockFixture<Sdfec>;

class SdfecTest : public BlockFixture<Sdfec> {
protected:
    SdfecTest()
        : BlockFixture(R"(DYNAMIC_CURRENTS : { Turbo_LTE = 1.17; LDPC = 2.34; };
                           SCALE : { VCCINT_SIM = 0.5; POWER_FACTOR = 3.0; };)")
    {
    }
};

TEST_F(SdfecTest, DefaultsAreTheTurboDecoderAtOneGigabit)
{
    calculate();
    EXPECT_EQ(params[Params::MODES], "Turbo_LTE");
    EXPECT_THAT(params[Params::DATARATE], IsBits(1.0f));
    EXPECT_THAT(params[Params::VCCINT], IsBits(0.88f));
    EXPECT_THAT(params[Params::CURRENT_FROM_SPEC], IsBits(1.5f)); // 1.17 / 0.78
}

TEST_F(SdfecTest, PowerGoesWithSupplyAndDataRate)
{
    params[Params::VCCINT] = 1.0f;
    calculate();
    EXPECT_THAT(params[Params::POWER], IsBits(6000.0f)); // 1.5 x 0.5 x 2^3 x 1000
    params[Params::DATARATE] = 2.5f;
    params[Params::MODES] = "LDPC";
    calculate();
    EXPECT_THAT(params[Params::POWER], IsBits(30000.0f)); // 3 x 0.5 x 2^3 x 1000 x 2.5
}

TEST_F(SdfecTest, AnUnknownCodeDrawsNothing)
{
    params[Params::MODES] = "turbo_lte";
    calculate();
    EXPECT_THAT(params[Params::CURRENT_FROM_SPEC], IsBits(0.0f));
    EXPECT_THAT(params[Params::POWER], IsBits(0.0f));
}

TEST_F(SdfecTest, TheCurrentIsDividedInDouble)
{
    load("DYNAMIC_CURRENTS : { Turbo_LTE = 0.13; }; SCALE : { VCCINT_SIM = 0.5; POWER_FACTOR = 3.0; };");
    calculate();
    const float inDouble = static_cast<float>(static_cast<double>(0.13f) / 0.78);
    ASSERT_NE(inDouble, 0.13f / 0.78f);
    EXPECT_THAT(params[Params::CURRENT_FROM_SPEC], IsBits(inDouble));
}

TEST_F(SdfecTest, TheWattsAreInSingleAndTheRestInDouble)
{
    load("DYNAMIC_CURRENTS : { Turbo_LTE = 0.8; }; SCALE : { VCCINT_SIM = 0.44; POWER_FACTOR = 3.0; };");
    params[Params::VCCINT] = 0.55f;
    params[Params::DATARATE] = 0.7f;
    calculate();
    const double factor = 1.953125; // 1.25 x 1.25 x 1.25
    const float current = static_cast<float>(static_cast<double>(0.8f) / 0.78);
    const float watts = current * 0.44f;
    const double exactWatts = static_cast<double>(current) * static_cast<double>(0.44f);
    const float power = static_cast<float>(static_cast<double>(watts) * factor * 1000.0 * static_cast<double>(0.7f));
    ASSERT_NE(power, watts * 1.953125f * 1000.0f * 0.7f);
    ASSERT_NE(power, static_cast<float>(exactWatts * factor * 1000.0 * static_cast<double>(0.7f)));
    EXPECT_THAT(params[Params::POWER], IsBits(power));
}

TEST_F(SdfecTest, AReferenceOfZeroGivesNoPower)
{
    load("DYNAMIC_CURRENTS : { Turbo_LTE = 0.39; }; SCALE : { VCCINT_SIM = 0.0; POWER_FACTOR = 3.0; };");
    calculate();
    EXPECT_THAT(params[Params::POWER], IsBits(0.0f)); // not infinity x 0
}

TEST_F(SdfecShippedData, AGigabitTakesSomeHundredMilliwatts)
{
    for (const char* code : {"LDPC_5G", "LDPC_Custom", "LDPC_DOCSIS", "LDPC_WiFi", "Turbo_LTE"}) {
        params[Params::MODES] = code;
        calculate();
        EXPECT_GT(params[Params::POWER], 50.0f) << code;
        EXPECT_LT(params[Params::POWER], 500.0f) << code;
    }
}

} // namespace zelm::test::sdfecTest

#include "hardblocks/ZelmOrvaneHscModel.h"

#include "support/BlockFixture.h"

namespace zelm::test::hscTest {

using Params = ZelmOrvaneHscParams;
using Hsc = ZelmOrvaneHscModel;
using HscShippedData = ShippedBlockFixture<Hsc>;

class HscTest : public BlockFixture<Hsc> {
protected:
    HscTest() : BlockFixture("NORMAL_MODE_POWER : { VALUE = 0.7; OTHER = 9.0; }; SLOW_MODE_POWER : { VALUE = 30.0; };")
    {
    }
};

TEST_F(HscTest, EachSpeedReadsItsTable)
{
    calculate();
    EXPECT_EQ(params[Params::MODE], "Normal");
    EXPECT_THAT(params[Params::VCCINT_POWER], IsBits(0.7f));
    params[Params::MODE] = "Slow";
    calculate();
    EXPECT_THAT(params[Params::VCCINT_POWER], IsBits(30.0f));
}

TEST_F(HscTest, AnUnknownSpeedIsNegativeInsideAndZeroOutside)
{
    params[Params::NUM_HSC] = 3;
    params[Params::VCCINT] = 1.76f;
    for (const char* mode : {"Turbo", "normal", "SLOW", ""}) {
        params[Params::MODE] = mode;
        calculate();
        EXPECT_THAT(params[Params::VCCINT_POWER_CALC], IsBits(-12.0f)) << mode; // -1 x 2 x 2 x 3
        EXPECT_THAT(params[Params::VCCINT_POWER], IsBits(0.0f)) << mode;
    }
}

TEST_F(HscTest, TheProductIsInDouble)
{
    params[Params::VCCINT] = 0.62f;
    params[Params::NUM_HSC] = 3;
    calculate();
    const double ratio = static_cast<double>(0.62f) / 0.88;
    const float inDouble = static_cast<float>(ratio * ratio * static_cast<double>(0.7f) * 3.0);
    ASSERT_NE(inDouble, 0.62f / 0.88f * (0.62f / 0.88f) * 0.7f * 3.0f);
    EXPECT_THAT(params[Params::VCCINT_POWER_CALC], IsBits(inDouble));
    EXPECT_THAT(params[Params::VCCINT_POWER], IsBits(inDouble));
}

TEST_F(HscShippedData, TheSlowSpeedTakesAboutHalf)
{
    calculate();
    const float normal = params[Params::VCCINT_POWER];
    params[Params::MODE] = "Slow";
    calculate();
    EXPECT_GT(normal, 500.0f);
    EXPECT_LT(normal, 2000.0f);
    EXPECT_GT(params[Params::VCCINT_POWER], 0.4f * normal);
    EXPECT_LT(params[Params::VCCINT_POWER], 0.7f * normal);
}

} // namespace zelm::test::hscTest

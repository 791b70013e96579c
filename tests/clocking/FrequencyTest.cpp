#include "clocking/ZelmOrvaneDpllModel.h"
#include "clocking/ZelmOrvaneRuskModel.h"
#include "clocking/ZelmOrvaneVekoModel.h"

#include "support/BlockFixture.h"

namespace zelm::test::frequencyTest {

template <class Model>
class ClockGenerator : public testing::Test {
};

struct BlockNames {
    template <class Model>
    static std::string GetName(int)
    {
        return std::string(Model::name);
    }
};
using Models = testing::Types<ZelmOrvaneVekoModel, ZelmOrvaneDpllModel, ZelmOrvaneRuskModel>;
TYPED_TEST_SUITE(ClockGenerator, Models, BlockNames);

TYPED_TEST(ClockGenerator, DefaultsByHand)
{
    using Params = typename TypeParam::Params;
    const Params params = calculateShipped<TypeParam>();
    EXPECT_THAT(params[Params::PFD_CLOCK], IsBits(320.0f));
    EXPECT_THAT(params[Params::FVCO], IsBits(3200.0f));
    EXPECT_THAT(params[Params::CLOCKOUT0], IsBits(3200.0f / 3.0f));
    EXPECT_THAT(params[Params::CLOCKOUT3], IsBits(3200.0f / 3.0f));
}

TYPED_TEST(ClockGenerator, CountersDivideAndMultiply)
{
    using Params = typename TypeParam::Params;
    Params params;
    params[Params::INPUT_FREQUENCY] = 100.0f;
    params[Params::D_COUNTER] = 3;
    params[Params::M_COUNTER] = 30;
    params[Params::CLKOUT1_DIVIDE] = 2;
    params[Params::CLKOUT2_DIVIDE] = 8;
    params = calculateShipped<TypeParam>(params);
    const float reference = 100.0f / 3.0f; // rounded before it is multiplied
    EXPECT_THAT(params[Params::PFD_CLOCK], IsBits(reference));
    EXPECT_THAT(params[Params::FVCO], IsBits(reference * 30.0f));
    EXPECT_THAT(params[Params::CLOCKOUT1], IsBits(reference * 30.0f / 2.0f));
    EXPECT_THAT(params[Params::CLOCKOUT2], IsBits(reference * 30.0f / 8.0f));
}

TYPED_TEST(ClockGenerator, ADividerOfZeroStopsAllClocks)
{
    using Params = typename TypeParam::Params;
    Params params;
    params[Params::D_COUNTER] = 0;
    params = calculateShipped<TypeParam>(params);
    std::vector<std::string> names;
    Params::getFloatIntermediateCalculationNames(names);
    int clocks = 0;
    for (const std::string& name : names) {
        if (name != "FVCO" && name != "PFD_CLOCK" && name != "KELP_CLOCK" && !name.starts_with("CLOCK"))
            continue;
        EXPECT_THAT(params[Params::string_to_float_enum(name)], IsBits(0.0f)) << name;
        ++clocks;
    }
    EXPECT_GE(clocks, 6);
}

TYPED_TEST(ClockGenerator, OutputsCountFromADivideOfTwoOn)
{
    using Params = typename TypeParam::Params;
    Params params;
    params[Params::CLKOUT0_DIVIDE] = 2;
    params[Params::CLKOUT1_DIVIDE] = 1;
    params[Params::CLKOUT2_DIVIDE] = 0;
    params[Params::CLKOUT3_DIVIDE] = -2;
    params = calculateShipped<TypeParam>(params);
    EXPECT_THAT(params[Params::CLOCKOUT0], IsBits(1600.0f));
    EXPECT_THAT(params[Params::CLOCKOUT1], IsBits(0.0f));
    EXPECT_THAT(params[Params::CLOCKOUT2], IsBits(0.0f));
    EXPECT_THAT(params[Params::CLOCKOUT3], IsBits(0.0f));
}

} // namespace zelm::test::frequencyTest

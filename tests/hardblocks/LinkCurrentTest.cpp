// What holds for both PCIe blocks: the same formulas, each over data of its own.

#include "hardblocks/ZelmOrvanePcieb5Model.h"
#include "hardblocks/ZelmOrvanePciebModel.h"

#include "support/BlockFixture.h"

#include <cmath>

namespace zelm::test::linkCurrentTest {

constexpr std::string_view kGroups = R"(DYNAMIC_CURRENTS : {
                                            GEN1x1 : { AVG_CURRENT_A = 0.25; PEAK_CURRENT_A = 9.0; };
                                            GEN3x8 : { AVG_CURRENT_A = 0.7; }; };
                                        SCALE : { VCCINT_SIM = 0.36; POWER_FACTOR = 3.0; };)";

struct Pcieb {
    using Model = ZelmOrvanePciebModel;
};

struct Pcieb5 {
    using Model = ZelmOrvanePcieb5Model;
};

template <class Block>
class LinkCurrent : public BlockFixture<typename Block::Model> {
protected:
    LinkCurrent() : BlockFixture<typename Block::Model>(kGroups) {}
};

using Blocks = testing::Types<Pcieb, Pcieb5>;
TYPED_TEST_SUITE(LinkCurrent, Blocks);

TYPED_TEST(LinkCurrent, DefaultsAreOneSlowLane)
{
    using Cell = typename TypeParam::Model::Params;
    this->calculate();
    EXPECT_EQ(this->params[Cell::DATA_TAG], "GEN1x1");
    EXPECT_THAT(this->params[Cell::VCCINT], IsBits(0.72f));
    EXPECT_THAT(this->params[Cell::CURRENT], IsBits(0.25f));
    EXPECT_THAT(this->params[Cell::POWER], IsBits(720.0f)); // 0.25 x 0.36 x 2^3 x 1000
}

TYPED_TEST(LinkCurrent, SpeedAndWidthPickTheRow)
{
    using Cell = typename TypeParam::Model::Params;
    this->params[Cell::LINK_SPEED] = "GEN3";
    this->params[Cell::LINK_WIDTH] = "x8";
    this->calculate();
    EXPECT_EQ(this->params[Cell::DATA_TAG], "GEN3x8");
    EXPECT_THAT(this->params[Cell::CURRENT], IsBits(0.7f));
}

TYPED_TEST(LinkCurrent, TheWattsAreInSingleAndTheRestInDouble)
{
    using Cell = typename TypeParam::Model::Params;
    this->load("DYNAMIC_CURRENTS : { GEN1x1 : { AVG_CURRENT_A = 0.8; }; };"
               "SCALE : { VCCINT_SIM = 0.4; POWER_FACTOR = 3.0; };");
    this->params[Cell::VCCINT] = 0.6f;
    this->calculate();
    const double factor = 3.375; // 1.5 x 1.5 x 1.5
    const float watts = 0.8f * 0.4f;
    const float power = static_cast<float>(static_cast<double>(watts) * factor * 1000.0);
    ASSERT_NE(power, watts * 3.375f * 1000.0f);
    ASSERT_NE(power, static_cast<float>(static_cast<double>(0.8f) * static_cast<double>(0.4f) * factor * 1000.0));
    EXPECT_THAT(this->params[Cell::POWER], IsBits(power));
}

TYPED_TEST(LinkCurrent, AMissingLinkFlowsOn)
{
    using Cell = typename TypeParam::Model::Params;
    this->params[Cell::LINK_WIDTH] = "X1";
    this->calculate();
    EXPECT_THAT(this->params[Cell::CURRENT], IsBits(zelm::unsetFloat));
    EXPECT_TRUE(std::isinf(this->params[Cell::POWER]));
}

TYPED_TEST(LinkCurrent, AReferenceOfZeroGivesNoPower)
{
    this->load("DYNAMIC_CURRENTS : { GEN1x1 : { AVG_CURRENT_A = 0.25; }; };"
               "SCALE : { VCCINT_SIM = 0.0; POWER_FACTOR = 3.0; };");
    this->calculate();
    EXPECT_THAT(this->params[TypeParam::Model::Params::POWER], IsBits(0.0f)); // not infinity x 0
}

TYPED_TEST(LinkCurrent, ShippedCurrentsRiseWithSpeedAndWidth)
{
    using Cell = typename TypeParam::Model::Params;
    const DataDirVariable variable(shippedDataDirectory());
    TypeParam::Model::Data::getMutableGlobal().reset();
    for (const char* speed : {"GEN1", "GEN2", "GEN3", "GEN4"}) {
        float narrower = 30.0f;
        for (const char* width : {"x1", "x2", "x4", "x8", "x16"}) {
            this->params[Cell::LINK_SPEED] = speed;
            this->params[Cell::LINK_WIDTH] = width;
            this->calculate();
            EXPECT_GT(this->params[Cell::POWER], narrower) << speed << width;
            narrower = this->params[Cell::POWER];
        }
        EXPECT_LT(narrower, 1500.0f) << speed;
    }
}

} // namespace zelm::test::linkCurrentTest

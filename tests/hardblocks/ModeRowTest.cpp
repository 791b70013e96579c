// What holds for both blocks whose power is a row of MODE_TABLE, with or without error correction.

#include "hardblocks/ZelmOrvaneIlknModel.h"
#include "hardblocks/ZelmOrvaneJorlModel.h"

#include "support/BlockFixture.h"

#include <cmath>

namespace zelm::test::modeRowTest {

struct Mac {
    using Model = ZelmOrvaneJorlModel;
    static constexpr auto count = Model::Params::NUM_JORL;
};

struct Interlaken {
    using Model = ZelmOrvaneIlknModel;
    static constexpr auto count = Model::Params::NUM_ILKN;
};

template <class Block>
class ModeRow : public BlockFixture<typename Block::Model> {
protected:
    using Params = typename Block::Model::Params;

    ModeRow()
        : BlockFixture<typename Block::Model>(R"(MODE_TABLE : {
              KEY_2x    : { POWER_WO_FEC = 25.0; POWER_W_FEC = 40.0; };
              KEY_third : { POWER_WO_FEC = 0.3; POWER_W_FEC = 0.7; };
              KEY_minus : { POWER_WO_FEC = 5.0; POWER_W_FEC = -5.0; };
              KEY_half  : { POWER_W_FEC = 40.0; }; };)")
    {
        mode("2x");
    }

    void mode(const char* text)
    {
        this->params[Params::MODE] = text;
    }

    float calculated()
    {
        this->calculate();
        return this->params[Params::VCCINT_POWER];
    }
};

using Blocks = testing::Types<Mac, Interlaken>;
TYPED_TEST_SUITE(ModeRow, Blocks);

TYPED_TEST(ModeRow, OnlyTheExactWordDisabledTurnsCorrectionOff)
{
    using Cell = typename TypeParam::Model::Params;
    for (const char* word : {"Enabled", "ENABLED", "anything", "disabled", "DISABLED", "Disabled ", ""}) {
        this->params[Cell::FEC] = word;
        EXPECT_THAT(this->calculated(), IsBits(40.0f)) << word;
    }
    this->params[Cell::FEC] = "Disabled";
    EXPECT_THAT(this->calculated(), IsBits(25.0f));
}

TYPED_TEST(ModeRow, PowerGoesWithTheSquareOfTheSupplyAndWithTheCount)
{
    using Cell = typename TypeParam::Model::Params;
    this->params[Cell::VCCINT] = 1.76f;
    this->params[TypeParam::count] = 3;
    EXPECT_THAT(this->calculated(), IsBits(480.0f)); // 40 x 2 x 2 x 3
    this->params[Cell::VCCINT] = 0.0f;
    EXPECT_THAT(this->calculated(), IsBits(0.0f));
}

TYPED_TEST(ModeRow, TheProductIsInDouble)
{
    using Cell = typename TypeParam::Model::Params;
    this->mode("third");
    this->params[Cell::VCCINT] = 0.62f;
    this->params[TypeParam::count] = 3;
    const double ratio = static_cast<double>(0.62f) / 0.88;
    const float inDouble = static_cast<float>(ratio * ratio * static_cast<double>(0.7f) * 3.0);
    const float inSingle = 0.62f / 0.88f * (0.62f / 0.88f) * 0.7f * 3.0f;
    ASSERT_NE(inDouble, inSingle);
    EXPECT_THAT(this->calculated(), IsBits(inDouble));
}

TYPED_TEST(ModeRow, ANegativePowerIsReportedAsZero)
{
    using Cell = typename TypeParam::Model::Params;
    this->mode("minus");
    EXPECT_THAT(this->calculated(), IsBits(0.0f));
    EXPECT_THAT(this->params[Cell::VCCINT_POWER_CALC], IsBits(-5.0f));
}

TYPED_TEST(ModeRow, AMissingRowFlowsOn)
{
    using Cell = typename TypeParam::Model::Params;
    this->mode("none");
    this->params[TypeParam::count] = 2;
    EXPECT_TRUE(std::isinf(this->calculated())); // twice the greatest float
    EXPECT_EQ(this->params[Cell::MODE_KEYSTR], "KEY_none");
    this->mode("half");
    EXPECT_THAT(this->calculated(), IsBits(80.0f)); // the row that isn't taken may be missing
}

TYPED_TEST(ModeRow, ShippedRowsPayForCorrection)
{
    const DataDirVariable variable(shippedDataDirectory());
    auto& shipped = TypeParam::Model::Data::getMutableGlobal();
    shipped.reset();
    const auto keys = shipped.getCfgKeys({"MODE_TABLE"}, false);
    EXPECT_GE(keys.size(), 4u);
    for (const std::string& key : keys) {
        EXPECT_GT(shipped.getModeTable(key, "POWER_WO_FEC"), 200.0f) << key;
        EXPECT_GT(shipped.getModeTable(key, "POWER_W_FEC"), shipped.getModeTable(key, "POWER_WO_FEC")) << key;
        EXPECT_LT(shipped.getModeTable(key, "POWER_W_FEC"), 2500.0f) << key;
    }
}

} // namespace zelm::test::modeRowTest

#include "io/ZelmOrvaneKelpModel.h"

#include "support/BlockFixture.h"

namespace zelm::test::kelpTest {

using Params = ZelmOrvaneKelpParams;
using Data = ZelmOrvaneKelpData;
using Model = ZelmOrvaneKelpModel;

class KelpTest : public BlockFixture<Model> {
protected:
    KelpTest()
    {
        load(0.5);
        params[Params::CLOCK_FREQ] = 12.0f;
        params[Params::VCC_IO] = 1.0f; // 1 x 1 / 0.5: two milliwatts per milliampere
    }

    void load(double simVoltage)
    {
        BlockFixture::load("BITSLICE_DATA : { SIM_VOLTAGE = " + std::to_string(simVoltage) +
                           "; RX_BITSLICE_DATA = 0.75; TX_BITSLICE_DATA = 0.5; TX_BITSLICE_TRI_DATA = 0.25;"
                           " RX_BITSLICE_CONTROL_DATA = 0.125; TX_BITSLICE_CONTROL_DATA = 0.0625;"
                           " RX_DP_DELTA_PER_BS_DATA = 0.25; TX_DP_DELTA_PER_BS_DATA = 0.125; };");
    }

    void calculate(int rx, int tx, int rxtx)
    {
        params[Params::NUM_RX_IOS] = rx;
        params[Params::NUM_TX_IOS] = tx;
        params[Params::NUM_RXTX_IOS] = rxtx;
        Model::getGlobal().calculate(params);
    }
};

TEST_F(KelpTest, DefaultsAreAnEmptyNibble)
{
    Params fresh;
    Model::getGlobal().calculate(fresh);
    EXPECT_EQ(fresh[Params::NUM_RX_IOS] + fresh[Params::NUM_TX_IOS] + fresh[Params::NUM_RXTX_IOS], 0);
    EXPECT_EQ(fresh[Params::TX_DATA_WIDTH], 4);
    EXPECT_EQ(fresh[Params::RX_DATA_WIDTH], 4);
    EXPECT_THAT(fresh[Params::CLOCK_FREQ], IsBits(4267.0f));
    EXPECT_THAT(fresh[Params::VCC_IO], IsBits(0.85f));
}

TEST_F(KelpTest, ANibbleWithoutIosBurnsNothing)
{
    calculate(0, 0, 0);
    for (const auto cell : {Params::RX_CURRENT_PER_IO, Params::TX_CURRENT_PER_IO, Params::RXTX_CURRENT_PER_IO,
                            Params::TX_TRI_CURRENT_PER_IO, Params::BITSLICE_CONTROL_CURRENT_PER_IO,
                            Params::RX_POWER_PER_IO, Params::TX_POWER_PER_IO, Params::RXTX_POWER_PER_IO,
                            Params::RP_TOTAL_POWER, Params::RP_TOTAL_POWER_COE, Params::TESK_TOTAL_POWER})
        EXPECT_THAT(params[cell], IsBits(0.0f)) << Params::enum_to_string(cell);
    EXPECT_EQ(params[Params::NUM_IOS_IN_NIBBLE], 0);
}

TEST_F(KelpTest, AMixedNibble)
{
    calculate(1, 2, 1); // two spare slices
    EXPECT_EQ(params[Params::NUM_IOS_IN_NIBBLE], 4);
    EXPECT_THAT(params[Params::POWER_SCALING], IsBits(2.0f));
    EXPECT_THAT(params[Params::RXTX_BITSLICE_CURRENT], IsBits(0.75f));            // the greater
    EXPECT_THAT(params[Params::RX_CURRENT_PER_IO], IsBits(7.0f));                 // 0.75 x 4 + 0.5 x 2 x 4 / 1
    EXPECT_THAT(params[Params::TX_CURRENT_PER_IO], IsBits(3.5f));                 // 0.5 x 4 + 0.375 x 2 x 4 / 2
    EXPECT_THAT(params[Params::RXTX_CURRENT_PER_IO], IsBits(7.5f));               // 0.75 x 4 + 0.5625 x 2 x 4 / 1
    EXPECT_THAT(params[Params::TX_TRI_CURRENT_PER_IO], IsBits(0.25f));            // 0.25 x 12 / 4 / 3
    EXPECT_THAT(params[Params::BITSLICE_CONTROL_CURRENT_PER_IO], IsBits(0.375f)); // 0.125 x 12 / 4
    EXPECT_THAT(params[Params::RX_POWER_PER_IO], IsBits(14.75f));                 // (7 + 0.375) x 2
    EXPECT_THAT(params[Params::TX_POWER_PER_IO], IsBits(8.25f));                  // (3.5 + 0.25 + 0.375) x 2
    EXPECT_THAT(params[Params::RXTX_POWER_PER_IO], IsBits(16.25f));               // (7.5 + 0.25 + 0.375) x 2
    EXPECT_THAT(params[Params::RX_POWER], IsBits(14.75f));
    EXPECT_THAT(params[Params::TX_POWER], IsBits(16.5f));
    EXPECT_THAT(params[Params::RXTX_POWER], IsBits(16.25f));
    EXPECT_THAT(params[Params::RP_TOTAL_POWER], IsBits(47.5f));
    // Slices 0.75 + 1 + 1 + 0.75 + 0.75 + 1.125 = 5.375, x 4 = 21.5; tristate 0.75; control 1.5; all x 2.
    EXPECT_THAT(params[Params::RP_TOTAL_POWER_COE], IsBits(47.5f));
    // One nibble: (0.125 x 12 + 0.25 x 12 / 4) + 4 x 0.75 x 4 = 2.25 + 12; all x 2.
    EXPECT_THAT(params[Params::TESK_TOTAL_POWER], IsBits(28.5f));
}

TEST_F(KelpTest, AFullNibbleHasNoSpareSlices)
{
    calculate(6, 0, 0);
    EXPECT_THAT(params[Params::RX_CURRENT_PER_IO], IsBits(3.0f)); // 0.75 x 12 / 3
    EXPECT_THAT(params[Params::TX_CURRENT_PER_IO], IsBits(0.0f));
    EXPECT_THAT(params[Params::TX_TRI_CURRENT_PER_IO], IsBits(0.0f));
    // (6 x 0.75 x 4 + 0.125 x 12) x 2, from the I/Os and in one sum, without a tristate slice
    EXPECT_THAT(params[Params::RP_TOTAL_POWER], IsBits(39.0f));
    EXPECT_THAT(params[Params::RP_TOTAL_POWER_COE], IsBits(39.0f));
}

TEST_F(KelpTest, SevenIosTakeTwoNibbles)
{
    calculate(7, 0, 0);
    EXPECT_THAT(params[Params::TESK_TOTAL_POWER], IsBits(51.0f)); // (2 x 2.25 + 7 x 0.75 x 4) x 2
    // One slice too few: the formula runs on.
    EXPECT_THAT(params[Params::RX_CURRENT_PER_IO], IsBits(3.0f - 0.5f * 4.0f / 7.0f));
    calculate(6, 0, 0);
    EXPECT_THAT(params[Params::TESK_TOTAL_POWER], IsBits(40.5f)); // (2.25 + 18) x 2
    calculate(0, 0, 13);
    EXPECT_THAT(params[Params::TESK_TOTAL_POWER], IsBits(91.5f)); // (3 x 2.25 + 39) x 2
}

TEST_F(KelpTest, OnlyTransmittersTakeTheirOwnControl)
{
    calculate(0, 3, 0);
    EXPECT_THAT(params[Params::BITSLICE_CONTROL_CURRENT_PER_IO], IsBits(0.25f)); // 0.0625 x 12 / 3
    EXPECT_THAT(params[Params::TX_CURRENT_PER_IO], IsBits(3.5f));                // 2 + 0.375 x 3 x 4 / 3
    // (3 x 0.5 + 0.375 x 3) x 4 + 0.25 x 12 / 4 + 0.0625 x 12 = 10.5 + 0.75 + 0.75
    EXPECT_THAT(params[Params::RP_TOTAL_POWER_COE], IsBits(24.0f));
    // The coarse estimate keeps the receivers' control: (0.125 x 12 + 0.75 + 3 x 0.75 x 4) x 2.
    EXPECT_THAT(params[Params::TESK_TOTAL_POWER], IsBits(22.5f));
    calculate(0, 3, 1);
    EXPECT_THAT(params[Params::BITSLICE_CONTROL_CURRENT_PER_IO], IsBits(0.375f));
}

TEST_F(KelpTest, NarrowWidthsCountAsFour)
{
    const auto width = [&](int tx, int rx) {
        params[Params::TX_DATA_WIDTH] = tx;
        params[Params::RX_DATA_WIDTH] = rx;
        calculate(0, 1, 0);
        return params[Params::DATA_WIDTH_VALUE];
    };
    EXPECT_EQ(width(8, 4), 8);
    EXPECT_EQ(width(4, 16), 16);
    EXPECT_EQ(width(3, 1), 3);
    EXPECT_EQ(width(-5, -3), 4);
    EXPECT_EQ(width(0, 0), 4);
    EXPECT_EQ(width(1, 1), 4);
    EXPECT_EQ(width(2, 1), 4);
    EXPECT_THAT(params[Params::TX_TRI_CURRENT_PER_IO], IsBits(0.75f)); // 0.25 x 12 / 4
    // The coarse estimate takes the 2 as it stands: (1.5 + 0.25 x 12 / 2 + 0.75 x 4) x 2.
    EXPECT_THAT(params[Params::TESK_TOTAL_POWER], IsBits(12.0f));
}

TEST_F(KelpTest, AWidthOfZeroTakesTheTristateSliceAway)
{
    params[Params::TX_DATA_WIDTH] = 0;
    calculate(0, 1, 0);
    EXPECT_THAT(params[Params::TESK_TOTAL_POWER], IsBits(9.0f)); // (1.5 + 0.75 x 4) x 2
}

TEST_F(KelpTest, ASimulatedVoltageOfZeroScalesToNothing)
{
    load(0.0);
    calculate(1, 1, 1);
    EXPECT_THAT(params[Params::POWER_SCALING], IsBits(0.0f));
    EXPECT_THAT(params[Params::TESK_TOTAL_POWER], IsBits(0.0f));
    EXPECT_GT(params[Params::RX_CURRENT_PER_IO], 0.0f);
}

TEST(Kelp, ShippedDataGivesBelievablePower)
{
    const DataDirVariable variable(shippedDataDirectory());
    Data::getMutableGlobal().reset();
    Params params;
    params[Params::NUM_RXTX_IOS] = 6;
    Model::getGlobal().calculate(params); // a byte lane's half at 4267 Mb/s: a few milliwatts per pin
    EXPECT_GT(params[Params::RP_TOTAL_POWER], 6.0f);
    EXPECT_LT(params[Params::RP_TOTAL_POWER], 30.0f);
    EXPECT_NEAR(params[Params::TESK_TOTAL_POWER], params[Params::RP_TOTAL_POWER],
                0.3f * params[Params::RP_TOTAL_POWER]);
}

} // namespace zelm::test::kelpTest

#include "network/ZelmOrvaneNocModel.h"

#include "support/BlockFixture.h"

namespace zelm::test::nocTest {

using Params = ZelmOrvaneNocParams;

class NocTest : public BlockFixture<ZelmOrvaneNocModel> {
protected:
    NocTest()
    {
        load(R"(
            DEVICE_INT_NAMES : { ZQ4410 = "ZQ20T60"; SMALL = "ZQ01T01"; BARE = "ZQ02T02"; };
            CLOCK_BUFFER_MAX : { ZQ20T60 = 50; ZQ01T01 = 20000000; };
            CLOCK_BUFFER_DDR : { ZQ20T60 = 10; ZQ01T01 = 3; };
            COMMON_DATA : { NMU_DYNAMIC = 0.5; NMU_STAT = 2.0; NSU_DYNAMIC = 0.25; NSU_STAT = 1.0;
                            NPS_DYNAMIC = 0.125; NPS_STAT = 0.5; NOC_CLK_DYANMIC = 4.0; };
            DEVICE_DATA : { ZQ20T60 : { PS_TO_DDRC : { AVG_SW = 4; }; PL_TO_PL : { AVG_SW = 9; }; };
                            ZQ01T01 : { PS_TO_DDRC : { AVG_SW = 1; }; };
                            ZQ02T02 : { PS_TO_DDRC : { AVG_SW = 2; }; }; };)");
        params[Params::VCC_SOC] = 0.88f;
    }

    // 8 Gb/s each way in transactions of one beat: 8 x (1 + 1) / 1 + 8 x (2 + 1) / 1 = 40 Gb/s
    void carryForty()
    {
        params[Params::BANDWITH_READ] = params[Params::BANDWITH_WRITE] = 1000.0f;
        params[Params::TRANSACTION_READ_SIZE] = params[Params::TRANSACTION_WRITE_SIZE] = 16;
    }
};

TEST(Noc, ShippedDataGivesTensOfMilliwattsForABusyPath)
{
    const DataDirVariable variable(shippedDataDirectory());
    ASSERT_TRUE(ZelmOrvaneNocData::getMutableGlobal().reset());
    const ZelmOrvaneNocData& data = ZelmOrvaneNocData::getGlobal();
    const ZelmOrvaneNocModel& model = ZelmOrvaneNocModel::getGlobal();
    for (const std::string& device : data.getCfgKeys({"DEVICE_INT_NAMES"}, true)) {
        for (const std::string& path : data.getCfgKeys({"DEVICE_DATA", "ZQ20T60"}, false)) {
            Params params;
            params[Params::DEVICE] = device;
            params[Params::DATA_PATH] = path;
            params[Params::BANDWITH_READ] = params[Params::BANDWITH_WRITE] = 4000.0f;
            model.calculate(params);
            EXPECT_GT(params[Params::NUM_SWITCHES], 2) << device << " " << path;
            EXPECT_LT(params[Params::NUM_SWITCHES], 30) << device << " " << path;
            EXPECT_GT(params[Params::VCC_SOC_PWR], 20.0f) << device << " " << path;
            EXPECT_LT(params[Params::VCC_SOC_PWR], 90.0f) << device << " " << path;
            EXPECT_LT(model.calculateDdrOnlyClockBuffers(params, data), model.calculateTotalClockBuffers(params, data));
        }
    }
}

TEST_F(NocTest, AddsTheUnitsOfAPath)
{
    carryForty();
    params[Params::NUM_CLOCK_BUFFERS] = 5;
    params[Params::NOC_CLK] = 500.0f;
    calculate();
    EXPECT_THAT(params[Params::RAW_BW], IsBits(40.0f));
    EXPECT_THAT(params[Params::NMU_PWR], IsBits(22.0f)); // 0.5 x 40 + 2
    EXPECT_THAT(params[Params::NSU_PWR], IsBits(11.0f)); // 0.25 x 40 + 1
    EXPECT_EQ(params[Params::NUM_SWITCHES], 4);
    EXPECT_THAT(params[Params::NPS_PWR], IsBits(22.0f)); // (0.125 x 40 + 0.5) x 4
    EXPECT_EQ(params[Params::USED_CLK_BUFFERS], 5);
    // 0.88 V squared in single precision, over 0.7744 in double, is 1 again
    EXPECT_THAT(params[Params::PWR_SCALE_FACTOR], IsBits(static_cast<float>(double(0.88f * 0.88f) / 0.7744)));
    EXPECT_NEAR(params[Params::PWR_SCALE_FACTOR], 1.0, 1e-7);
    EXPECT_NEAR(params[Params::TOTAL_PATH_PWR], 55.0, 1e-5);
    EXPECT_NEAR(params[Params::NOC_CLK_PWR], 10.0, 1e-5); // 0.5 GHz x 4 x 5
    EXPECT_NEAR(params[Params::VCC_SOC_PWR], 65.0, 1e-5);
}

TEST_F(NocTest, BandwidthTermsAreSummedInDouble)
{
    params[Params::BANDWITH_READ] = 103.0f;
    params[Params::BANDWITH_WRITE] = 457.0f;
    params[Params::TRANSACTION_READ_SIZE] = 48;
    params[Params::TRANSACTION_WRITE_SIZE] = 80;
    calculate();
    const float read = 8.0f * 103.0f / 1000.0f;
    const float write = 457.0f * 8.0f / 1000.0f;
    const double inDouble = double(read) * 4.0 / 3.0 + double(write) * 7.0 / 5.0; // 3 and 5 beats, 1 and 2 of headers
    const float inSingle = read * 4.0f / 3.0f + write * 7.0f / 5.0f;
    ASSERT_NE(static_cast<float>(inDouble), inSingle);
    EXPECT_THAT(params[Params::RAW_BW], IsBits(static_cast<float>(inDouble)));
}

TEST_F(NocTest, SupplyIsSquaredInSingleAndDividedInDouble)
{
    params[Params::VCC_SOC] = 0.8f;
    calculate();
    const float square = 0.8f * 0.8f;
    EXPECT_THAT(params[Params::PWR_SCALE_FACTOR], IsBits(static_cast<float>(square / 0.7744)));
    EXPECT_NEAR(params[Params::PWR_SCALE_FACTOR], 0.826446, 1e-6);
}

TEST_F(NocTest, WithoutTransactionSizeOnlyThePartsAtRestStay)
{
    for (const int size : {0, -16}) {
        params[Params::TRANSACTION_READ_SIZE] = params[Params::TRANSACTION_WRITE_SIZE] = size;
        calculate();
        EXPECT_THAT(params[Params::RAW_BW], IsBits(0.0f)) << size;
        EXPECT_NEAR(params[Params::TOTAL_PATH_PWR], 5.0, 1e-6) << size; // 2 + 1 + 0.5 x 4
    }
    params[Params::TRANSACTION_READ_SIZE] = 16;
    calculate();
    EXPECT_NEAR(params[Params::RAW_BW], 1.6, 1e-6); // the read term alone: 0.8 x 2
}

TEST_F(NocTest, AnyPathButToDdrLiftsTheLimitOfClockBuffers)
{
    params[Params::NUM_CLOCK_BUFFERS] = 99;
    calculate();
    EXPECT_EQ(params[Params::USED_CLK_BUFFERS], 10);
    for (const auto kind :
         {Params::NUM_WIST_PATHS, Params::NUM_PL_PATHS, Params::NUM_NEMT_PATHS, Params::NUM_PS2NEMT_PATHS}) {
        params[kind] = 1;
        calculate();
        EXPECT_EQ(params[Params::USED_CLK_BUFFERS], 50) << Params::enum_to_string(kind);
        params[kind] = 0;
    }
    params[Params::NUM_CLOCK_BUFFERS] = 7;
    calculate();
    EXPECT_EQ(params[Params::USED_CLK_BUFFERS], 7);
    // Three counts are added up before the test, the fourth stands alone.
    params[Params::NUM_CLOCK_BUFFERS] = 99;
    params[Params::NUM_WIST_PATHS] = 1;
    params[Params::NUM_PL_PATHS] = -1;
    calculate();
    EXPECT_EQ(params[Params::USED_CLK_BUFFERS], 10);
    params[Params::NUM_PS2NEMT_PATHS] = 1;
    params[Params::NUM_PL_PATHS] = -9;
    calculate();
    EXPECT_EQ(params[Params::USED_CLK_BUFFERS], 50);
}

TEST_F(NocTest, ClockBuffersAreComparedInSinglePrecision)
{
    params[Params::DEVICE] = "SMALL";
    params[Params::NUM_PL_PATHS] = 1;
    params[Params::NUM_CLOCK_BUFFERS] = 16777217; // 2^24 + 1 has no float of its own
    calculate();
    EXPECT_EQ(params[Params::USED_CLK_BUFFERS], 16777216);
}

TEST_F(NocTest, APathWithoutPowerZeroesTheRailWhateverTheClockTakes)
{
    params[Params::VCC_SOC] = 0.0f;
    params[Params::NUM_CLOCK_BUFFERS] = 10;
    calculate();
    EXPECT_THAT(params[Params::VCC_SOC_PWR], IsBits(0.0f));

    params[Params::VCC_SOC] = 0.88f;
    params[Params::BANDWITH_WRITE] = 0.0f;
    params[Params::BANDWITH_READ] = -1000.0f;
    params[Params::TRANSACTION_READ_SIZE] = 16; // -16 Gb/s: -6 - 3 + (-2 + 0.5) x 4
    calculate();
    EXPECT_NEAR(params[Params::TOTAL_PATH_PWR], -15.0, 1e-5);
    EXPECT_NEAR(params[Params::NOC_CLK_PWR], 38.0, 1e-4); // 0.95 x 4 x 10
    EXPECT_THAT(params[Params::VCC_SOC_PWR], IsBits(0.0f));
}

TEST_F(NocTest, AnUnknownDeviceTakesTheDefaultDevicesTables)
{
    params[Params::DEVICE] = "NO_SUCH_DEVICE";
    params[Params::NUM_PL_PATHS] = 1;
    params[Params::NUM_CLOCK_BUFFERS] = 99;
    calculate();
    EXPECT_EQ(params[Params::INT_DEVICE_NAME], "ZQ20T60");
    EXPECT_EQ(params[Params::NUM_SWITCHES], 4);
    EXPECT_EQ(params[Params::USED_CLK_BUFFERS], 50);
}

TEST_F(NocTest, ADeviceWithoutBufferRowsHas64And24)
{
    params[Params::DEVICE] = "BARE";
    params[Params::NUM_CLOCK_BUFFERS] = 99;
    calculate();
    EXPECT_EQ(params[Params::INT_DEVICE_NAME], "ZQ02T02");
    EXPECT_EQ(params[Params::TOTAL_CLOCK_BUFFERS], 64);
    EXPECT_EQ(params[Params::DDR_ONLY_CLOCK_BUFFERS], 24);
    EXPECT_EQ(params[Params::USED_CLK_BUFFERS], 24);
}

TEST_F(NocTest, AnUnknownPathLetsTheMarkerFlowOn)
{
    params[Params::DATA_PATH] = "NO_SUCH_PATH";
    carryForty();
    calculate();
    EXPECT_EQ(params[Params::NUM_SWITCHES], zelm::unsetInt);
    EXPECT_THAT(params[Params::NPS_PWR], IsBits(5.5f * 2147483648.0f)); // 0x7fffffff as the nearest float
}

TEST_F(NocTest, ASetSwitchCountHoldsOverTheTable)
{
    params[Params::DATA_PATH] = "PL_TO_PL";
    calculate();
    EXPECT_EQ(params[Params::NUM_SWITCHES], 9);
    params[Params::NUM_SWITCHES] = 2;
    calculate();
    EXPECT_EQ(params[Params::NUM_SWITCHES], 2);
    params.resetUserInputs();
    params[Params::NUM_SWITCHES] = 2;
    calculate();
    EXPECT_EQ(params[Params::DATA_PATH], zelm::unsetString); // read by the default alone
}

TEST_F(NocTest, DefaultClockBuffersAreForTheHostToPull)
{
    calculate();
    EXPECT_EQ(params[Params::DEFAULT_CLOCK_BUFFERS], zelm::unsetInt);
    EXPECT_EQ(model.calculateDefaultClockBuffers(params, data), 6); // 4 switches
    params[Params::NUM_SWITCHES] = 9;
    calculate();
    EXPECT_EQ(model.calculateDefaultClockBuffers(params, data), 9);
}

} // namespace zelm::test::nocTest

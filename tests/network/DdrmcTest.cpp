#include "network/ZelmOrvaneDdrmcModel.h"

#include "support/BlockFixture.h"

namespace zelm::test::ddrmcTest {

using Params = ZelmOrvaneDdrmcParams;

class DdrmcTest : public BlockFixture<ZelmOrvaneDdrmcModel> {
protected:
    DdrmcTest()
    {
        write("SIM_VOLTAGE = 0.5;");
        params[Params::VCC_SOC] = 0.5f;
        params[Params::NOC_NSU_CLK] = 1000.0f;
    }

    void write(const std::string& simConditions)
    {
        load(R"(
            DDRMC_DATA : {
                HIGHEST_DATA_RATE_DDR4_1CH_X24_ECC_ENABLED : { DATARATE = 3200.0; DYNAMIC_POWER = 450.0; };
                HIGHEST_DATA_RATE_DDR4_1CH_X16_ECC_DISABLED : { DATARATE = 3200.0; DYNAMIC_POWER = 350.0; };
                HIGHEST_DATA_RATE_DDR4_2CH_X16_ECC_ENABLED : { DATARATE = 0.0; DYNAMIC_POWER = 350.0; }; };
            SIM_CONDITIONS : { )" +
             simConditions +
             R"( };
            NSU_CLOCK : { CLK_FREQ = 1.0; };)");
    }

    // Megabytes per second that take that share of a 16-bit bus at 3200 Mb/s, 6400 MB/s.
    void use(float readShare, float writeShare)
    {
        params[Params::DATA_RATE] = 3200.0f;
        params[Params::READ_BAND_WIDTH] = readShare * 6400.0f;
        params[Params::WRITE_BAND_WIDTH] = writeShare * 6400.0f;
    }
};

TEST(Ddrmc, ShippedDataGivesHundredsOfMilliwattsForAUsedController)
{
    const DataDirVariable variable(shippedDataDirectory());
    ASSERT_TRUE(ZelmOrvaneDdrmcData::getMutableGlobal().reset());
    int configurations = 0;
    for (const char* option : {"HIGHEST_DATA_RATE", "FEWEST_PINS"})
        for (const char* standard : {"DDR4", "LP4"})
            for (const int channels : {1, 2})
                for (const int width : {16, 32, 64})
                    for (const char* ecc : {"YES", "NO"}) {
                        Params params;
                        params[Params::COMMAND_BUS_OPTION] = option;
                        params[Params::DDR_STANDARD] = standard;
                        params[Params::NUM_CHANNELS] = channels;
                        params[Params::DATA_WIDTH] = width;
                        params[Params::ECC_USAGE] = ecc;
                        params[Params::DATA_RATE] = 2666.0f;
                        params[Params::READ_BAND_WIDTH] = params[Params::WRITE_BAND_WIDTH] =
                            0.4f * static_cast<float>(width) / 8.0f * 2666.0f;
                        ZelmOrvaneDdrmcModel::getGlobal().calculate(params);
                        if (params[Params::DDRMC_CONFIG_STR] == "INVALID_CONFIG")
                            continue;
                        ++configurations;
                        EXPECT_GT(params[Params::VCCSOC_POWER], 0.25f) << params[Params::CONFIG_STR];
                        EXPECT_LT(params[Params::VCCSOC_POWER], 0.95f) << params[Params::CONFIG_STR];
                    }
    const auto rows = ZelmOrvaneDdrmcData::getGlobal().getCfgKeys({"DDRMC_DATA"}, false);
    EXPECT_EQ(static_cast<std::size_t>(configurations), rows.size()) << "a row that no input reaches";
}

TEST_F(DdrmcTest, FullUseGivesTheCharacterisedPower)
{
    use(0.5f, 0.25f);
    calculate();
    EXPECT_EQ(params[Params::CONFIG_STR], "HIGHEST_DATA_RATE_DDR4_1CH_X24_ECC_ENABLED");
    EXPECT_EQ(params[Params::DDRMC_CONFIG_STR], "VALID_CONFIG");
    EXPECT_THAT(params[Params::READ_RATE], IsBits(50.0f)); // of the bus without its ECC bits
    EXPECT_THAT(params[Params::WRITE_RATE], IsBits(25.0f));
    // (450 - 50) / 2 x (1 + 1) x 75 / 80 + 50 = 425 mW
    EXPECT_THAT(params[Params::VCCSOC_POWER], IsBits(425.0f / 1000.0f));
}

TEST_F(DdrmcTest, MemoryRateAndNsuClockOweHalfEach)
{
    use(0.5f, 0.25f);
    params[Params::NOC_NSU_CLK] = 0.0f;
    calculate();
    EXPECT_THAT(params[Params::VCCSOC_POWER], IsBits(237.5f / 1000.0f)); // 200 x 75 / 80 + 50
    params[Params::NOC_NSU_CLK] = 500.0f;
    params[Params::DATA_RATE] = 1600.0f;
    params[Params::READ_BAND_WIDTH] = 1600.0f; // half of the bus
    params[Params::WRITE_BAND_WIDTH] = 0.0f;
    calculate();
    EXPECT_THAT(params[Params::VCCSOC_POWER], IsBits(175.0f / 1000.0f)); // 200 x (0.5 + 0.5) x 50 / 80 + 50
}

TEST_F(DdrmcTest, RatiosAndUseMultiplyInDouble)
{
    params[Params::DATA_RATE] = 2666.0f;
    params[Params::NOC_NSU_CLK] = 975.0f;
    params[Params::READ_BAND_WIDTH] = 1243.0f;
    params[Params::WRITE_BAND_WIDTH] = 777.0f;
    calculate();
    const float peak = 16.0f * 2666.0f;
    const float use = 777.0f * 8.0f / peak * 100.0f + 1243.0f * 8.0f / peak * 100.0f;
    const float rateRatio = 2666.0f / 3200.0f;
    const float clockRatio = 975.0f / 1000.0f / 1.0f;
    const auto powerOf = [](float load) { return (load / 80.0f + 50.0f) * 1.0f / 1000.0f; };
    const double load = 200.0 * (double(rateRatio) + double(clockRatio)) * double(use);
    const float loadInSingle = 200.0f * (rateRatio + clockRatio) * use;
    ASSERT_NE(powerOf(static_cast<float>(load)), powerOf(loadInSingle));
    EXPECT_THAT(params[Params::VCCSOC_POWER], IsBits(powerOf(static_cast<float>(load))));
}

TEST_F(DdrmcTest, AnIdleControllerTakesFiftyMilliwatts)
{
    calculate();
    EXPECT_THAT(params[Params::READ_RATE], IsBits(0.0f));
    EXPECT_THAT(params[Params::VCCSOC_POWER], IsBits(0.05f)); // DATA_RATE is 0 unless set
    use(0.0f, 0.0f);
    calculate();
    EXPECT_THAT(params[Params::VCCSOC_POWER], IsBits(0.05f));
    use(0.5f, 0.5f);
    for (const float dataRate : {0.0f, -3200.0f}) {
        params[Params::DATA_RATE] = dataRate;
        calculate();
        EXPECT_THAT(params[Params::READ_RATE], IsBits(0.0f));
        EXPECT_THAT(params[Params::WRITE_RATE], IsBits(0.0f));
        EXPECT_THAT(params[Params::VCCSOC_POWER], IsBits(0.05f));
    }
    use(0.5f, 0.5f);
    params[Params::DATA_WIDTH] = 0; // a bus of no pins has no share, and no row
    calculate();
    EXPECT_THAT(params[Params::READ_RATE], IsBits(0.0f));
    EXPECT_THAT(params[Params::VCCSOC_POWER], IsBits(0.0f));
}

TEST_F(DdrmcTest, EccThatIsNeitherYesNorNoWidensTheBusButIsNamedDisabled)
{
    params[Params::ECC_USAGE] = "ON";
    calculate();
    EXPECT_EQ(params[Params::TOTAL_DATA_WIDTH], 24);
    EXPECT_EQ(params[Params::ECC_USAGE_STR], "ECC_DISABLED");
    EXPECT_EQ(params[Params::CONFIG_STR], "HIGHEST_DATA_RATE_DDR4_1CH_X24_ECC_DISABLED");
    EXPECT_EQ(params[Params::DDRMC_CONFIG_STR], "INVALID_CONFIG");
    EXPECT_THAT(params[Params::VCCSOC_POWER], IsBits(0.0f));
}

TEST_F(DdrmcTest, EccBitsFollowWidthAndStandardOfOneChannel)
{
    struct Row {
        const char* standard;
        int channels;
        int width;
        const char* ecc;
        int total;
    };
    for (const Row& row : {Row{"DDR4", 1, 16, "YES", 24}, Row{"DDR4", 1, 15, "YES", 15}, Row{"DDR4", 1, 64, "YES", 72},
                           Row{"DDR4", 1, 16, "NO", 16}, Row{"DDR4", 2, 16, "YES", 16}, Row{"DDR4", 0, 16, "YES", 16},
                           Row{"LP4", 1, 16, "YES", 32}, Row{"LP4", 1, 8, "YES", 24}, Row{"LP4", 2, 32, "YES", 32},
                           Row{"DDR3", 1, 32, "YES", 32}}) {
        params[Params::DDR_STANDARD] = row.standard;
        params[Params::NUM_CHANNELS] = row.channels;
        params[Params::DATA_WIDTH] = row.width;
        params[Params::ECC_USAGE] = row.ecc;
        calculate();
        EXPECT_EQ(params[Params::TOTAL_DATA_WIDTH], row.total)
            << row.standard << " " << row.channels << " x " << row.width << " " << row.ecc;
    }
}

TEST_F(DdrmcTest, NamesComposeFromTheChoices)
{
    params[Params::COMMAND_BUS_OPTION] = "FEW";
    params[Params::DDR_STANDARD] = "LP4";
    params[Params::NUM_CHANNELS] = 2;
    params[Params::DATA_WIDTH] = 32;
    params[Params::ECC_USAGE] = "NO";
    calculate();
    EXPECT_EQ(params[Params::CONFIG_STR], "FEW_LP4_2CH_X32_ECC_DISABLED");
    EXPECT_EQ(params[Params::DATA_WIDTH_STR], zelm::unsetString); // for the host to pull
    EXPECT_EQ(ZelmOrvaneDdrmcModel::getGlobal().calculateDataWidthStr(params, data), "LP4_ECCNO_CH2_DATA_WIDTH_LIST");
}

TEST_F(DdrmcTest, ReadOnlyDataRateIsForTheHostToPull)
{
    calculate();
    EXPECT_THAT(params[Params::READ_ONLY_DATARATE], IsBits(zelm::unsetFloat));
    EXPECT_THAT(model.calculateReadOnlyDatarate(params, data), IsBits(3200.0f));
    params[Params::DATA_WIDTH] = 17;
    calculate();
    EXPECT_THAT(model.calculateReadOnlyDatarate(params, data), IsBits(0.0f));
}

TEST_F(DdrmcTest, ARowWithoutDataRateCountsNoMemoryShare)
{
    use(0.5f, 0.3f);
    params[Params::NUM_CHANNELS] = 2;
    calculate();
    EXPECT_NEAR(params[Params::VCCSOC_POWER], 0.2, 1e-7); // (350 - 50) / 2 x (0 + 1) x 80 / 80 + 50
}

TEST_F(DdrmcTest, SupplyScalesWithTheSquareFormedInDouble)
{
    write("SIM_VOLTAGE = 0.88;");
    params[Params::VCC_SOC] = 0.906f;
    calculate();
    const double rest = 1.0 - double((0.88f - 0.906f) / 0.88f);
    EXPECT_THAT(params[Params::VOLTAGE_SCALING], IsBits(static_cast<float>(rest * rest)));
    EXPECT_NEAR(params[Params::VOLTAGE_SCALING], 1.0599643, 1e-6); // (0.906 / 0.88)^2
    EXPECT_NEAR(params[Params::VCCSOC_POWER], 0.0529982, 1e-7);

    write("SIM_VOLTAGE = 0.0;");
    calculate();
    EXPECT_THAT(params[Params::VOLTAGE_SCALING], IsBits(1.0f));
}

} // namespace zelm::test::ddrmcTest

#include "io/ZelmOrvaneIologicModel.h"

#include "support/BlockFixture.h"

#include <cmath>

namespace zelm::test::iologicTest {

using Params = ZelmOrvaneIologicParams;
using Data = ZelmOrvaneIologicData;
using Model = ZelmOrvaneIologicModel;

class IologicTest : public BlockFixture<Model> {
protected:
    IologicTest()
    {
        load("FINAL_DATA : { IDDR_CURR = 0.25; ODDR_CURR = 0.75; }; SIM_VOLTAGE : { VCCINT_IO = 0.5; };");
        params[Params::FREQUENCY] = 8.0f;
    }

    float power(float vccIo)
    {
        params[Params::VCC_IO] = vccIo;
        Model::getGlobal().calculate(params);
        return params[Params::VCC_IO_PWR];
    }
};

TEST_F(IologicTest, TheModeIsTheTablesKey)
{
    EXPECT_THAT(power(1.0f), IsBits(0.25f * 8.0f * 0.5f));
    EXPECT_EQ(params[Params::MODE], "IDDR");
    EXPECT_EQ(params[Params::MODE_CURR_DATA_TAG], "IDDR_CURR");
    EXPECT_THAT(params[Params::VCC_IO_CURRENT], IsBits(2.0f));
    params[Params::MODE] = "ODDR";
    EXPECT_THAT(power(1.0f), IsBits(0.75f * 8.0f * 0.5f));
    EXPECT_EQ(Model::getGlobal().calculateModeCurrDataTag(params, Data::getGlobal()), "ODDR_CURR");
}

TEST_F(IologicTest, TheSupplyCancels)
{
    EXPECT_THAT(power(0.5f), IsBits(1.0f));
    EXPECT_THAT(power(4.0f), IsBits(1.0f));
    EXPECT_THAT(power(-2.0f), IsBits(1.0f));
    EXPECT_THAT(power(0.85f), IsBits(0.85f * (0.5f / 0.85f) * 2.0f)); // but for its rounding
    EXPECT_NEAR(power(0.85f), 1.0, 1e-6);
}

TEST_F(IologicTest, NoSupplyMeansNoPower)
{
    EXPECT_THAT(power(0.0f), IsBits(0.0f));
    params[Params::MODE] = "NO_SUCH_MODE"; // its current is infinite
    EXPECT_THAT(power(0.0f), IsBits(0.0f));
}

TEST_F(IologicTest, AnUnknownModeLetsTheSentinelFlowOn)
{
    params[Params::MODE] = "NO_SUCH_MODE";
    EXPECT_TRUE(std::isinf(power(1.0f)));
}

TEST(Iologic, ShippedDataGivesBelievablePower)
{
    const DataDirVariable variable(shippedDataDirectory());
    Data::getMutableGlobal().reset();
    const Data& data = Data::getGlobal();
    for (const std::string& tag : data.getCfgKeys({"FINAL_DATA"}, true)) {
        Params params;
        params[Params::MODE] = tag.substr(0, tag.find("_CURR"));
        Model::getGlobal().calculate(params); // microwatts at 125 MHz
        EXPECT_GT(params[Params::VCC_IO_PWR], 0.001f) << tag;
        EXPECT_LT(params[Params::VCC_IO_PWR], 0.1f) << tag;
    }
}

} // namespace zelm::test::iologicTest

#include "dsp/ZelmOrvaneDspConfigModel.h"

#include "support/BlockFixture.h"

namespace zelm::test::dspConfigTest {

using Params = ZelmOrvaneDspConfigParams;
using Data = ZelmOrvaneDspConfigData;

TEST(DspConfig, TheModeIsHandedOnAsItStands)
{
    const DataDirVariable variable(shippedDataDirectory());
    Data::getMutableGlobal().reset();
    Params params;
    ZelmOrvaneDspConfigModel::getGlobal().calculate(params);
    EXPECT_EQ(params[Params::DSP_MODE], "27x24 + 58");
    EXPECT_EQ(params[Params::DSP_MODE_USED], "27x24 + 58");
    params[Params::DSP_MODE] = "no such mode"; // the model reads no table
    ZelmOrvaneDspConfigModel::getGlobal().calculate(params);
    EXPECT_EQ(params[Params::DSP_MODE_USED], "no such mode");
}

TEST(DspConfig, ShippedTablesKnowEachFamilysModeAndBlock)
{
    const DataDirVariable variable(shippedDataDirectory());
    Data::getMutableGlobal().reset();
    const Data& data = Data::getGlobal();
    EXPECT_EQ(data.getDspConfigMap("MACB_INT24"), "27x24 + 58");
    const std::vector<std::string> families = data.getCfgKeys({"DSP_CONFIG_MAP"}, false);
    EXPECT_EQ(families.size(), 7u);
    for (const std::string& family : families) {
        for (const char* property : {"BLOCK", "MULTIPLIER", "ADDER"})
            EXPECT_NE(data.getDspConfigData(family, property), zelm::unsetString) << family << " " << property;
    }
    EXPECT_EQ(data.getDspConfigMap("NO_SUCH_FAMILY"), zelm::unsetString);
}

} // namespace zelm::test::dspConfigTest

#include "network/ZelmOrvaneGorbModel.h"

#include "support/BlockFixture.h"

#include <cmath>

namespace zelm::test::gorbTest {

using Params = ZelmOrvaneGorbParams;

class GorbTest : public BlockFixture<ZelmOrvaneGorbModel> {
protected:
    GorbTest()
    {
        write("0.5");
        params[Params::PSUPPLY_VOLTAGE] = 0.5f; // ratio 1
    }

    void write(const std::string& simVoltage)
    {
        load(R"(
            GORB_POWER_PARAM : { OCM_CONTROLLER_DYNAMIC_VCCINT_PSLP = 0.5; OCM_CONTROLLER_STATIC_VCCINT_PSLP = 7.0;
                                 OCM_MEM_STATIC_VCCINT_PSLP = 3.0; OCM_MEM_READ_DYNAMIC_VCCINT_PSLP = 0.25;
                                 OCM_MEM_WRITE_DYNAMIC_VCCINT_PSLP = 0.75; };
            SIM_CONDITIONS : { PSIM_VOLTAGE = )" +
             simVoltage + "; };");
    }
};

TEST(Gorb, FamilyIsInterfacesTimesMetrics)
{
    for (const char* interface : {"PL_INTERFACE_1", "PL_INTERFACE_2", "PL_INTERFACE_3", "PS_INTERFACE"}) {
        int ordinal = 0;
        for (const char* metric : {"_DYNAMIC_POWER", "_STATIC_POWER", "_TOTAL_POWER"}) {
            const auto cell = Params::string_to_float_enum(std::string(interface) + metric);
            EXPECT_TRUE(cell > Params::FirstMOFloat && cell < Params::LastMOFloat) << interface << metric;
            EXPECT_EQ(cell, Params::string_to_float_enum(std::string(interface) + "_DYNAMIC_POWER") + ordinal++);
        }
        ordinal = 0;
        for (const char* metric : {"_MEM_MAX_BANDWIDTH", "_READ_EFFICIENCY", "_WRITE_EFFICIENCY"}) {
            const auto cell = Params::string_to_float_enum(std::string(interface) + metric);
            EXPECT_TRUE(cell > Params::FirstICFloat && cell < Params::LastICFloat) << interface << metric;
            EXPECT_EQ(cell, Params::string_to_float_enum(std::string(interface) + "_MEM_MAX_BANDWIDTH") + ordinal++);
        }
    }
}

TEST(Gorb, ShippedDataGivesBelievablePower)
{
    const DataDirVariable variable(shippedDataDirectory());
    ASSERT_TRUE(ZelmOrvaneGorbData::getMutableGlobal().reset());
    Params params;
    ZelmOrvaneGorbModel::getGlobal().calculate(params);
    EXPECT_GT(params[Params::PL_INTERFACE_1_DYNAMIC_POWER], 30.0f);
    EXPECT_LT(params[Params::PL_INTERFACE_1_DYNAMIC_POWER], 150.0f);
    EXPECT_GT(params[Params::GORB_TOP_DYNAMIC_POWER], 150.0f);
    EXPECT_LT(params[Params::GORB_TOP_DYNAMIC_POWER], 600.0f);
    EXPECT_GT(params[Params::GORB_TOP_STATIC_POWER], 30.0f);
    EXPECT_LT(params[Params::GORB_TOP_STATIC_POWER], 200.0f);
}

TEST_F(GorbTest, DefaultInterfaceIsUsedToNearlyHalf)
{
    calculate();
    EXPECT_THAT(params[Params::PL_INTERFACE_1_MEM_MAX_BANDWIDTH], IsBits(24000.0f)); // 2 x 256 x 375 / 8
    const float efficiency = 0.5f * (22400.0f / 24000.0f);
    EXPECT_THAT(params[Params::PL_INTERFACE_1_READ_EFFICIENCY], IsBits(efficiency));
    EXPECT_THAT(params[Params::PL_INTERFACE_1_WRITE_EFFICIENCY], IsBits(efficiency));
    EXPECT_THAT(params[Params::PS_INTERFACE_MEM_MAX_BANDWIDTH], IsBits(24000.0f)); // 750 x 256 / 8
    EXPECT_THAT(params[Params::PS_INTERFACE_READ_EFFICIENCY], IsBits(efficiency));
}

TEST_F(GorbTest, AddsControllerAndInterfaces)
{
    params[Params::MEM_FREQ] = 100.0f;
    // Fabric 1: 8 bit at 100 MHz carry 200 MB/s; 100 MB/s use 0.5 x 200 / 200 of each direction.
    params[Params::PL_INTERFACE_1_INTF_WIDTH] = 8;
    params[Params::PL_INTERFACE_1_INTF_FREQ] = 100.0f;
    params[Params::PL_INTERFACE_1_USER_INTERFACE_BANDWIDTH] = 100;
    params[Params::PL_INTERFACE_1_NO_OF_MEM_BANKS] = 2;
    // Fabric 2: 16 bit at 50 MHz carry 200 MB/s; 200 MB/s use all.
    params[Params::PL_INTERFACE_2_INTF_WIDTH] = 16;
    params[Params::PL_INTERFACE_2_INTF_FREQ] = 50.0f;
    params[Params::PL_INTERFACE_2_USER_INTERFACE_BANDWIDTH] = 200;
    params[Params::PL_INTERFACE_3_USER_INTERFACE_BANDWIDTH] = 0;
    // The processing system: 256 bit at 100 MHz carry 3200 MB/s; 800 MB/s use a quarter.
    params[Params::PS_INTERFACE_USER_BANDWIDTH] = 800;
    params[Params::PS_INTERFACE_NO_OF_MEM_BANKS] = 3;
    calculate();
    EXPECT_THAT(params[Params::PL_INTERFACE_1_DYNAMIC_POWER], IsBits(400.0f)); // (0.75 + 0.25) / 2 x 100 x 4 x 2
    EXPECT_THAT(params[Params::PL_INTERFACE_1_STATIC_POWER], IsBits(24.0f));   // 2 x 3 x 4
    EXPECT_THAT(params[Params::PL_INTERFACE_1_TOTAL_POWER], IsBits(424.0f));
    EXPECT_THAT(params[Params::PL_INTERFACE_2_DYNAMIC_POWER], IsBits(200.0f)); // (0.75 + 0.25) x 50 x 4
    EXPECT_THAT(params[Params::PL_INTERFACE_2_STATIC_POWER], IsBits(12.0f));
    EXPECT_THAT(params[Params::PL_INTERFACE_3_DYNAMIC_POWER], IsBits(0.0f));
    EXPECT_THAT(params[Params::PL_INTERFACE_3_STATIC_POWER], IsBits(12.0f));
    EXPECT_THAT(params[Params::PS_INTERFACE_READ_EFFICIENCY], IsBits(0.25f));
    EXPECT_THAT(params[Params::PS_INTERFACE_DYNAMIC_POWER], IsBits(300.0f)); // 1.0 / 4 x 100 x 4 x 3
    EXPECT_THAT(params[Params::PS_INTERFACE_STATIC_POWER], IsBits(84.0f));   // 3 x 7 x 4: the controller's item
    EXPECT_THAT(params[Params::OCM_CONTROLLER_DYNAMIC_POWER], IsBits(50.0f));
    EXPECT_THAT(params[Params::OCM_CONTROLLER_STATIC_POWER], IsBits(7.0f));
    EXPECT_THAT(params[Params::OCM_CONTROLLER_TOTAL_POWER], IsBits(57.0f));
    EXPECT_THAT(params[Params::GORB_TOP_DYNAMIC_POWER], IsBits(950.0f)); // 400 + 200 + 0 + 300 + 50
    EXPECT_THAT(params[Params::GORB_TOP_STATIC_POWER], IsBits(139.0f));  // 24 + 12 + 12 + 84 + 7
}

TEST_F(GorbTest, SupplyScalesInterfacesButNotTheController)
{
    calculate();
    const float dynamicAtOne = params[Params::PL_INTERFACE_2_DYNAMIC_POWER];
    params[Params::PSUPPLY_VOLTAGE] = 1.0f; // ratio 2
    calculate();
    // 2^2.33 = 4 x 2^0.33 = 5.0280535, 2^1.88 = 4 / 2^0.12 = 3.6807506
    EXPECT_NEAR(params[Params::DYNAMIC_VOLTAGE_SCALING], 5.0280535, 1e-6);
    EXPECT_NEAR(params[Params::LEAKAGE_VOLTAGE_SCALING], 3.6807506, 1e-6);
    EXPECT_THAT(params[Params::PL_INTERFACE_2_DYNAMIC_POWER],
                IsBits(dynamicAtOne * params[Params::DYNAMIC_VOLTAGE_SCALING]));
    EXPECT_THAT(params[Params::PL_INTERFACE_2_STATIC_POWER], IsBits(params[Params::LEAKAGE_VOLTAGE_SCALING] * 12.0f));
    EXPECT_THAT(params[Params::OCM_CONTROLLER_DYNAMIC_POWER], IsBits(375.0f)); // 0.5 x 750
    EXPECT_THAT(params[Params::OCM_CONTROLLER_STATIC_POWER], IsBits(7.0f));
}

TEST_F(GorbTest, PowersAreTakenInDouble)
{
    params[Params::PSUPPLY_VOLTAGE] = 0.44f;
    calculate();
    const float ratio = 0.44f / 0.5f;
    EXPECT_THAT(params[Params::DYNAMIC_VOLTAGE_SCALING], IsBits(static_cast<float>(std::pow(double(ratio), 2.33))));
    EXPECT_THAT(params[Params::LEAKAGE_VOLTAGE_SCALING], IsBits(static_cast<float>(std::pow(double(ratio), 1.88))));
}

TEST_F(GorbTest, WithoutAPositiveReferenceVoltageNothingIsScaledIn)
{
    for (const char* simVoltage : {"0.0", "-0.5"}) {
        write(simVoltage);
        calculate();
        EXPECT_THAT(params[Params::DYNAMIC_VOLTAGE_SCALING], IsBits(0.0f)) << simVoltage;
        EXPECT_THAT(params[Params::LEAKAGE_VOLTAGE_SCALING], IsBits(0.0f)) << simVoltage;
        EXPECT_THAT(params[Params::PL_INTERFACE_1_TOTAL_POWER], IsBits(0.0f)) << simVoltage;
        EXPECT_THAT(params[Params::GORB_TOP_STATIC_POWER], IsBits(7.0f)) << simVoltage;
    }
}

TEST_F(GorbTest, UsageModeOneSilencesTheDynamicPowerOfThatInterfaceOnly)
{
    calculate();
    const float before = params[Params::GORB_TOP_DYNAMIC_POWER];
    params[Params::PL_INTERFACE_3_USAGE_MODES] = 1;
    params[Params::PS_INTERFACE_USAGE_MODES] = 2; // any other number is no such mode
    calculate();
    EXPECT_THAT(params[Params::PL_INTERFACE_3_DYNAMIC_POWER], IsBits(0.0f));
    EXPECT_THAT(params[Params::PL_INTERFACE_3_STATIC_POWER], IsBits(12.0f));
    EXPECT_THAT(params[Params::PL_INTERFACE_3_TOTAL_POWER], IsBits(12.0f));
    EXPECT_GT(params[Params::PS_INTERFACE_DYNAMIC_POWER], 0.0f);
    EXPECT_NEAR(before - params[Params::GORB_TOP_DYNAMIC_POWER], 700.0, 1e-3); // 11200 / 24000 x 375 x 4
    params[Params::PS_INTERFACE_USAGE_MODES] = 1;
    calculate();
    EXPECT_THAT(params[Params::PS_INTERFACE_DYNAMIC_POWER], IsBits(0.0f));
    EXPECT_THAT(params[Params::PS_INTERFACE_STATIC_POWER], IsBits(28.0f));
}

TEST_F(GorbTest, AnInterfaceOfNoWidthIsNotUsed)
{
    params[Params::PL_INTERFACE_1_INTF_WIDTH] = 0;
    params[Params::MEM_FREQ] = 0.0f;
    calculate();
    EXPECT_THAT(params[Params::PL_INTERFACE_1_READ_EFFICIENCY], IsBits(0.0f));
    EXPECT_THAT(params[Params::PL_INTERFACE_1_DYNAMIC_POWER], IsBits(0.0f));
    EXPECT_THAT(params[Params::PS_INTERFACE_WRITE_EFFICIENCY], IsBits(0.0f));
}

TEST_F(GorbTest, TheUsersBandwidthDoublesAsAnInteger)
{
    params[Params::PL_INTERFACE_1_USER_INTERFACE_BANDWIDTH] = 0x40000001;
    calculate();
    // 2 x 0x40000001 wraps to -2147483646, which rounds to -2^31
    EXPECT_THAT(params[Params::PL_INTERFACE_1_READ_EFFICIENCY], IsBits(0.5f * (-2147483648.0f / 24000.0f)));
}

} // namespace zelm::test::gorbTest

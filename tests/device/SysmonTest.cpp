#include "device/ZelmOrvaneSysmonModel.h"

#include "support/BlockFixture.h"

#include <limits>

namespace zelm::test::sysmonTest {

using Params = ZelmOrvaneSysmonParams;

constexpr std::string_view kPowers = R"(SYSMON_DATA : {
  ROOT_DYNAMIC = 4.0; ROOT_LEAKAGE = 1.0; SATELLITE_DYNAMIC = 0.5; SATELLITE_LEAKAGE = 0.25;
  ROOT_STATIC_FROM_VCCAUX_HARL = 3.0; ROOT_STATIC_FROM_VCCUAX_SYSMON = 5.0; };
DEVICE_DATA : {
  T60 : { NUM_SAT = 20; SLICE_COUNT = 2; DECOMMISSIONED_SATS = 4; AVG_SATELLITE_ANALOG_POWER = 3.9; };
  FEW : { NUM_SAT = 4.99; SLICE_COUNT = 2; DECOMMISSIONED_SATS = 1; AVG_SATELLITE_ANALOG_POWER = 3; }; };)";

class SysmonTest : public BlockFixture<ZelmOrvaneSysmonModel> {
protected:
    SysmonTest()
    {
        load("PSIM_VOLTAGE = 0.5;");
    }

    void load(const std::string& conditions)
    {
        BlockFixture::load(std::string(kPowers) + " SIM_CONDITIONS : { " + conditions + " };");
    }
};

TEST_F(SysmonTest, PowersFollowTheCounts)
{
    calculate();
    EXPECT_EQ(params[Params::NUM_SATELLITE], 20);
    EXPECT_EQ(params[Params::ANALOG_POWER], 3); // 3.9 cut off
    EXPECT_THAT(params[Params::VCCPSLP_POWER], IsBits(0.75f));
    EXPECT_THAT(params[Params::VCCPSFP_POWER], IsBits(0.75f));
    EXPECT_THAT(params[Params::VCCHARL_POWER], IsBits(13.0f));      // (4 + 2 x 0.5 + 1 + 2 x 0.25) x 2
    EXPECT_THAT(params[Params::VCCSOC_POWER], IsBits(11.25f));      // 0.75 x (20 - 3 - 2)
    EXPECT_THAT(params[Params::VCCAUXHARL_POWER], IsBits(6.0f));    // 3 x 2
    EXPECT_THAT(params[Params::VCCAUXSYSMON_POWER], IsBits(13.0f)); // 5 x 2 + 3
    EXPECT_THAT(params[Params::VCCAUX_POWER], IsBits(33.0f));       // (20 - 3 - 2 - 4) x 3
}

TEST_F(SysmonTest, TheTotalScalesEachRail)
{
    params[Params::VCCHARL] = 1.0f;
    params[Params::VCCPSLP] = 0.5f;
    params[Params::VCCPSFP] = 0.25f;
    params[Params::VCCSOC] = 0.5f;
    calculate();
    EXPECT_THAT(params[Params::VCCHARL_SCALING], IsBits(4.0f));
    EXPECT_THAT(params[Params::VCCPSFP_SCALING], IsBits(0.25f));
    // 13 x 4 + 0.75 + 0.75 x 0.25 + 11.25 + 6 + 13 + 33
    EXPECT_THAT(params[Params::TOTAL_STATIC_POWER], IsBits(116.1875f));
    EXPECT_THAT(params[Params::VCCHARL_POWER], IsBits(13.0f)); // stays unscaled
}

TEST_F(SysmonTest, TheSquareIsTakenInDouble)
{
    load("PSIM_VOLTAGE = 0.7;");
    params[Params::VCCHARL] = 0.88f;
    calculate();
    const float ratio = 0.88f / 0.7f;
    const double square = static_cast<double>(ratio) * static_cast<double>(ratio);
    EXPECT_THAT(params[Params::VCCHARL_SCALING], IsBits(static_cast<float>(square)));
}

TEST_F(SysmonTest, TheDefaultsAreThePublishedOnes)
{
    calculate();
    EXPECT_THAT(params[Params::VCCHARL], IsBits(0.88f));
    EXPECT_THAT(params[Params::VCCPSLP], IsBits(0.72f));
    EXPECT_THAT(params[Params::VCCPSFP], IsBits(0.72f));
    EXPECT_THAT(params[Params::VCCSOC], IsBits(0.78f));
    EXPECT_EQ(params[Params::DEVICE], "T60");
}

TEST_F(SysmonTest, TheAuxiliaryVoltagesInfluenceNothing)
{
    calculate();
    const float before = params[Params::TOTAL_STATIC_POWER];
    for (const auto rail : {Params::VCCAUX, Params::VCCAUXHARL, Params::VCCAUXSMON}) {
        EXPECT_THAT(params[rail], IsBits(zelm::unsetFloat)) << "nothing reads it";
        params[rail] = 0.0f;
    }
    calculate();
    EXPECT_THAT(params[Params::TOTAL_STATIC_POWER], IsBits(before));
    for (const auto scaling : {Params::VCCAUX_SCALING, Params::VCCAUXHARL_SCALING, Params::VCCAUXSMON_SCALING})
        EXPECT_THAT(params[scaling], IsBits(1.0f));
}

TEST_F(SysmonTest, ARailThatIsOffHasNoShareOfTheTotal)
{
    for (const float volts : {0.0f, -0.0f, -1.0f}) {
        params[Params::VCCHARL] = volts;
        params[Params::VCCPSLP] = params[Params::VCCPSFP] = params[Params::VCCSOC] = 0.5f;
        calculate();
        EXPECT_THAT(params[Params::VCCHARL_SCALING], IsBits(0.0f)) << volts;
        EXPECT_THAT(params[Params::VCCHARL_POWER], IsBits(13.0f));
        EXPECT_THAT(params[Params::TOTAL_STATIC_POWER], IsBits(64.75f)); // 0.75 + 0.75 + 11.25 + 6 + 13 + 33
    }
}

TEST_F(SysmonTest, NoCharacterisationVoltageMeansNextToNoScaling)
{
    load("OTHER = 1.0;");
    calculate();
    // 0.88 / 3.4e38 is a denormal float, its square far below the least one
    EXPECT_THAT(params[Params::VCCHARL_SCALING], IsBits(0.0f));
    params[Params::VCCHARL] = 1e20f;
    calculate();
    EXPECT_GT(params[Params::VCCHARL_SCALING], 0.0f); // still a square law: (1e20 / 3.4e38)^2 = 8.6e-38
    EXPECT_LT(params[Params::VCCHARL_SCALING], 1e-36f);
}

TEST_F(SysmonTest, ACharacterisationVoltageOfZeroGivesZero)
{
    load("PSIM_VOLTAGE = 0.0;");
    calculate();
    for (const auto scaling :
         {Params::VCCHARL_SCALING, Params::VCCPSLP_SCALING, Params::VCCPSFP_SCALING, Params::VCCSOC_SCALING})
        EXPECT_THAT(params[scaling], IsBits(0.0f));
    EXPECT_THAT(params[Params::TOTAL_STATIC_POWER], IsBits(52.0f)); // 6 + 13 + 33
}

TEST_F(SysmonTest, DisablingItChangesNothing)
{
    calculate();
    const float before = params[Params::TOTAL_STATIC_POWER];
    params[Params::SYSMON_ENABLED] = "NO";
    calculate();
    EXPECT_THAT(params[Params::TOTAL_STATIC_POWER], IsBits(before));
    EXPECT_EQ(params[Params::SYSMON_ENABLED], "NO");
}

TEST_F(SysmonTest, FewSatellitesGiveNegativePowers)
{
    params[Params::DEVICE] = "FEW";
    calculate();
    EXPECT_EQ(params[Params::NUM_SATELLITE], 4);               // 4.99 cut off
    EXPECT_THAT(params[Params::VCCSOC_POWER], IsBits(-0.75f)); // 0.75 x (4 - 3 - 2)
    EXPECT_THAT(params[Params::VCCAUX_POWER], IsBits(-6.0f));  // (4 - 3 - 2 - 1) x 3
}

TEST_F(SysmonTest, AnUnknownDeviceCountsTheLowestInt)
{
    params[Params::DEVICE] = "NO_SUCH_DEVICE";
    calculate();
    constexpr int lowest = std::numeric_limits<int>::min();
    EXPECT_EQ(params[Params::NUM_SATELLITE], lowest);
    EXPECT_EQ(params[Params::NUM_SLICES], lowest);
    // lowest - 3 - lowest = -3 wrapped; -3 - lowest wraps to 2147483645; times lowest keeps the last bit only
    EXPECT_THAT(params[Params::VCCSOC_POWER], IsBits(0.75f * -3.0f));
    EXPECT_THAT(params[Params::VCCAUX_POWER], IsBits(static_cast<float>(lowest)));
}

TEST(Sysmon, AMissingPowerLetsTheSentinelFlowOn)
{
    const TemporaryDataDirectory directory;
    directory.write("ZelmOrvaneSysmonData", R"(ZelmOrvaneSysmonData : {
      SYSMON_DATA : { SATELLITE_DYNAMIC = 1.0; };
      DEVICE_DATA : { T60 : { NUM_SAT = 20; SLICE_COUNT = 2; DECOMMISSIONED_SATS = 4;
                              AVG_SATELLITE_ANALOG_POWER = 3; }; };
      SIM_CONDITIONS : { PSIM_VOLTAGE = 0.5; }; };)");
    ZelmOrvaneSysmonData::getMutableGlobal().reset();
    Params params;
    ZelmOrvaneSysmonModel::getGlobal().calculate(params);
    EXPECT_THAT(params[Params::VCCPSLP_POWER], IsBits(zelm::unsetFloat)); // 1 is lost beside the sentinel
    EXPECT_TRUE(std::isinf(params[Params::VCCHARL_POWER]));
}

TEST(Sysmon, ShippedNetworksDrawTenthsOfAWatt)
{
    const DataDirVariable variable(shippedDataDirectory());
    const auto& data = ZelmOrvaneSysmonData::getMutableGlobal();
    ZelmOrvaneSysmonData::getMutableGlobal().reset();
    const std::vector<std::string> devices = data.getCfgKeys({"DEVICE_DATA"}, false);
    EXPECT_THAT(devices, testing::IsSupersetOf({"T60", "ZQ4410", "ZC7540"}));
    for (const std::string& device : devices) {
        Params params;
        params[Params::DEVICE] = device;
        ZelmOrvaneSysmonModel::getGlobal().calculate(params);
        EXPECT_GT(params[Params::TOTAL_STATIC_POWER], 30.0f) << device; // mW
        EXPECT_LT(params[Params::TOTAL_STATIC_POWER], 500.0f) << device;
        EXPECT_GE(params[Params::VCCAUX_POWER], 0.0f) << device;
    }
}

} // namespace zelm::test::sysmonTest

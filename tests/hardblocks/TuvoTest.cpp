#include "hardblocks/ZelmOrvaneTuvoModel.h"

#include "support/BlockFixture.h"

#include <map>
#include <utility>

namespace zelm::test::tuvoTest {

using Params = ZelmOrvaneTuvoParams;
using Tuvo = ZelmOrvaneTuvoModel;
using TuvoShippedData = ShippedBlockFixture<Tuvo>;

class TuvoTest : public BlockFixture<Tuvo> {
protected:
    TuvoTest()
        : BlockFixture(R"(SIM_VOLTAGE : { VCCINT = 0.44; };
                           CONFIG_PWR_DATA : {
                               FEC_ONLY_100GE : { TYPICAL = 3.0; };
                               FEC_100GE : { TYPICAL = 7.0; IDLE = 2.0; };
                               NO_FEC_100GE : { TYPICAL = 5.0; };
                               FEC_50GE : { TYPICAL = 0.1; }; };)")
    {
    }

    void configure(const char* bypass, const char* fec, const char* rate = "100GE", const char* activity = "TYPICAL")
    {
        params[Params::TRANSCODE_BYPASS] = bypass;
        params[Params::FEC_USED] = fec;
        params[Params::PORT_DATA_RATE] = rate;
        params[Params::ACTIVITY] = activity;
        calculate();
    }
};

TEST_F(TuvoTest, DefaultsAreErrorCorrectionAlone)
{
    calculate();
    EXPECT_EQ(params[Params::TUVO_CONFIGURATION], "FEC_ONLY_100GE");
    EXPECT_EQ(params[Params::INVALID_CONFIG], "NO");
    EXPECT_THAT(params[Params::POWER], IsBits(12.0f)); // 3 x (0.88 / 0.44) squared
}

TEST_F(TuvoTest, TheConfigurationNamesWhatRuns)
{
    configure("NO", "YES");
    EXPECT_EQ(params[Params::TUVO_CONFIGURATION], "FEC_100GE");
    EXPECT_THAT(params[Params::POWER], IsBits(28.0f)); // 7 x 4
    configure("NO", "NO");
    EXPECT_EQ(params[Params::TUVO_CONFIGURATION], "NO_FEC_100GE");
    EXPECT_THAT(params[Params::POWER], IsBits(20.0f)); // 5 x 4
    configure("NO", "YES", "100GE", "IDLE");
    EXPECT_THAT(params[Params::POWER], IsBits(8.0f)); // 2 x 4
    configure("yes", "yes");                          // words are compared exactly
    EXPECT_EQ(params[Params::TUVO_CONFIGURATION], "NO_FEC_100GE");
}

TEST_F(TuvoTest, BypassWithoutCorrectionIsInvalidThoughARowExists)
{
    configure("YES", "NO");
    EXPECT_EQ(params[Params::TUVO_CONFIGURATION], "FEC_ONLY_100GE");
    EXPECT_EQ(params[Params::INVALID_CONFIG], "YES");
    EXPECT_THAT(params[Params::POWER], IsBits(0.0f));
}

TEST_F(TuvoTest, AMissingRowIsInvalid)
{
    configure("NO", "YES", "10GE");
    EXPECT_EQ(params[Params::TUVO_CONFIGURATION], "FEC_10GE");
    EXPECT_EQ(params[Params::INVALID_CONFIG], "YES");
    EXPECT_THAT(params[Params::POWER], IsBits(0.0f));
    configure("NO", "NO", "100GE", "IDLE"); // the rate is known, the activity isn't
    EXPECT_EQ(params[Params::INVALID_CONFIG], "YES");
}

TEST_F(TuvoTest, ASupplyTableOfZeroGivesNoPower)
{
    load(R"(SIM_VOLTAGE : { VCCINT = 0.0; }; CONFIG_PWR_DATA : { FEC_ONLY_100GE : { TYPICAL = 3.0; }; };)");
    calculate();
    EXPECT_EQ(params[Params::INVALID_CONFIG], "NO");
    EXPECT_THAT(params[Params::POWER], IsBits(0.0f));
}

TEST_F(TuvoTest, TheRatioIsSquaredFirstAndInSingle)
{
    params[Params::VCCINT] = 0.64f;
    configure("NO", "YES", "50GE");
    const float ratio = 0.64f / 0.44f;
    const float squared = ratio * ratio;
    ASSERT_NE(0.1f * squared, 0.1f * ratio * ratio);
    EXPECT_THAT(params[Params::POWER], IsBits(0.1f * squared));
}

TEST_F(TuvoShippedData, EveryConfigurationHasAllActivities)
{
    std::map<std::string, float> busiest;
    for (const char* rate : {"10GE", "25GE", "40GE", "50GE", "100GE"}) {
        for (const auto& [bypass, fec] : {std::pair{"NO", "NO"}, {"NO", "YES"}, {"YES", "YES"}}) {
            float calmer = 0.0f;
            for (const char* activity : {"IDLE", "TYPICAL", "MAXIMUM"}) {
                params[Params::PORT_DATA_RATE] = rate;
                params[Params::TRANSCODE_BYPASS] = bypass;
                params[Params::FEC_USED] = fec;
                params[Params::ACTIVITY] = activity;
                calculate();
                EXPECT_EQ(params[Params::INVALID_CONFIG], "NO") << params[Params::TUVO_CONFIGURATION] << activity;
                EXPECT_GT(params[Params::POWER], calmer) << params[Params::TUVO_CONFIGURATION] << activity;
                calmer = params[Params::POWER];
            }
            EXPECT_LT(calmer, 600.0f);
            busiest[params[Params::TUVO_CONFIGURATION]] = calmer;
        }
        EXPECT_GT(busiest[std::string("FEC_") + rate], busiest[std::string("NO_FEC_") + rate]);
        EXPECT_GT(busiest[std::string("FEC_") + rate], busiest[std::string("FEC_ONLY_") + rate]);
    }
}

} // namespace zelm::test::tuvoTest

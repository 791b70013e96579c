#include "hardblocks/ZelmOrvaneJorlModel.h"

#include "support/BlockFixture.h"

namespace zelm::test::jorlTest {

using Params = ZelmOrvaneJorlParams;
using Jorl = ZelmOrvaneJorlModel;
using JorlShippedData = ShippedBlockFixture<Jorl>;

TEST_F(JorlShippedData, DefaultsGiveSixCorrectedChannelsOfTwoWatts)
{
    calculate();
    EXPECT_EQ(params[Params::MODE_KEYSTR], "KEY_6x100GE");
    EXPECT_EQ(params[Params::FEC], "Enabled");
    EXPECT_EQ(params[Params::NUM_JORL], 1);
    EXPECT_THAT(params[Params::VCCINT], IsBits(0.88f));
    EXPECT_GT(params[Params::VCCINT_POWER], 1000.0f);
    EXPECT_LT(params[Params::VCCINT_POWER], 3000.0f);
}

} // namespace zelm::test::jorlTest

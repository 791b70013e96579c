#include "hardblocks/ZelmOrvaneIlknModel.h"

#include "support/BlockFixture.h"

namespace zelm::test::ilknTest {

using Params = ZelmOrvaneIlknParams;
using Ilkn = ZelmOrvaneIlknModel;
using IlknShippedData = ShippedBlockFixture<Ilkn>;

TEST_F(IlknShippedData, DefaultsGiveACorrectedCoreOfOneToTwoWatts)
{
    calculate();
    EXPECT_EQ(params[Params::MODE_KEYSTR], "KEY_600G_ILKN");
    EXPECT_EQ(params[Params::FEC], "ENABLED"); // in capitals, unlike the Ethernet MAC's
    EXPECT_EQ(params[Params::NUM_ILKN], 1);
    EXPECT_THAT(params[Params::VCCINT], IsBits(0.88f));
    EXPECT_GT(params[Params::VCCINT_POWER], 1000.0f);
    EXPECT_LT(params[Params::VCCINT_POWER], 2000.0f);
}

} // namespace zelm::test::ilknTest

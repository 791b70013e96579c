#include "hardblocks/ZelmOrvanePciebModel.h"

#include "support/BlockFixture.h"

namespace zelm::test::pciebTest {

using Params = ZelmOrvanePciebParams;
using Pcieb = ZelmOrvanePciebModel;
using PciebShippedData = ShippedBlockFixture<Pcieb>;

TEST_F(PciebShippedData, EightLanesOfTheFourthGenerationTakeHalfAWatt)
{
    params[Params::LINK_SPEED] = "GEN4";
    params[Params::LINK_WIDTH] = "x8";
    calculate();
    EXPECT_GT(params[Params::POWER], 200.0f);
    EXPECT_LT(params[Params::POWER], 800.0f);
}

} // namespace zelm::test::pciebTest

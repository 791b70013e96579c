#include "hardblocks/ZelmOrvanePcieb5Model.h"

#include "support/BlockFixture.h"

namespace zelm::test::pcieb5Test {

using Params = ZelmOrvanePcieb5Params;
using Pcieb5 = ZelmOrvanePcieb5Model;
using Pcieb5ShippedData = ShippedBlockFixture<Pcieb5>;

TEST_F(Pcieb5ShippedData, SixteenLanesOfTheFifthGenerationTakeAboutAWatt)
{
    params[Params::LINK_SPEED] = "GEN5";
    params[Params::LINK_WIDTH] = "x16";
    calculate();
    EXPECT_GT(params[Params::POWER], 800.0f);
    EXPECT_LT(params[Params::POWER], 2500.0f);
}

} // namespace zelm::test::pcieb5Test

#include "hardblocks/ZelmOrvanePciebModel.h"

#include "HardBlockTest.h"

namespace {

using namespace zelm::test;
using Params = ZelmOrvanePciebParams;
using Pcieb = ZelmOrvanePciebModel;
using PciebShippedData = ShippedDataTest<Pcieb>;

TEST(Pcieb, AgreesWithVectors)
{
    expectVectorsAgree<Pcieb>("Pcieb");
}

TEST(Pcieb, KeepsTheBlockContract)
{
    expectBlockContract<Pcieb>(
        {.floatInputs = 1, .stringInputs = 2, .floatOutputs = 1, .floatIntermediates = 1, .stringIntermediates = 1});
}

TEST_F(PciebShippedData, EightLanesOfTheFourthGenerationTakeHalfAWatt)
{
    params[Params::LINK_SPEED] = "GEN4";
    params[Params::LINK_WIDTH] = "x8";
    calculate();
    EXPECT_GT(params[Params::POWER], 200.0f);
    EXPECT_LT(params[Params::POWER], 800.0f);
}

} // namespace

#include "device/ZelmOrvaneStaticModel.h"

#include "support/BlockContract.h"
#include "support/Vectors.h"

namespace
{

using namespace zelm::test;

TEST(Static, AgreesWithVectors)
{
    expectVectorsAgree<ZelmOrvaneStaticModel>("Static");
}

} // namespace

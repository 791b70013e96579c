#include "device/ZelmOrvanePartsModel.h"

#include "support/BlockContract.h"
#include "support/Vectors.h"

namespace
{

using namespace zelm::test;

TEST(Parts, AgreesWithVectors)
{
    expectVectorsAgree<ZelmOrvanePartsModel>("Parts");
}

} // namespace

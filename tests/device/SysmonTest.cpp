#include "device/ZelmOrvaneSysmonModel.h"

#include "support/BlockContract.h"
#include "support/Vectors.h"

namespace
{

using namespace zelm::test;

TEST(Sysmon, AgreesWithVectors)
{
    expectVectorsAgree<ZelmOrvaneSysmonModel>("Sysmon");
}

} // namespace

#include "bench/BlockBench.h"

#include "fabric/ZelmOrvaneCleClkModel.h"
#include "fabric/ZelmOrvaneCleLogicModel.h"
#include "fabric/ZelmOrvaneClkDistModel.h"
#include "fabric/ZelmOrvaneClockModel.h"

namespace
{

BENCHMARK(zelm::bench::calculate<ZelmOrvaneCleLogicModel>)->Name("CleLogic/calculate");
BENCHMARK(zelm::bench::calculate<ZelmOrvaneClockModel>)->Name("Clock/calculate");
BENCHMARK(zelm::bench::calculate<ZelmOrvaneCleClkModel>)->Name("CleClk/calculate");
BENCHMARK(zelm::bench::calculate<ZelmOrvaneClkDistModel>)->Name("ClkDist/calculate");

} // namespace

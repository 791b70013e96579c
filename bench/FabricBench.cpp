#include "bench/BlockBench.h"

#include "fabric/ZelmOrvaneCleClkModel.h"
#include "fabric/ZelmOrvaneCleLogicModel.h"
#include "fabric/ZelmOrvaneClkDistModel.h"
#include "fabric/ZelmOrvaneClockModel.h"
#include "fabric/ZelmOrvaneIriClkModel.h"
#include "fabric/ZelmOrvaneIriImuxModel.h"

namespace {

BENCHMARK(zelm::bench::calculate<ZelmOrvaneCleLogicModel>)->Name("CleLogic/calculate");
BENCHMARK(zelm::bench::calculate<ZelmOrvaneClockModel>)->Name("Clock/calculate");
BENCHMARK(zelm::bench::calculate<ZelmOrvaneCleClkModel>)->Name("CleClk/calculate");
BENCHMARK(zelm::bench::calculate<ZelmOrvaneClkDistModel>)->Name("ClkDist/calculate");
BENCHMARK(zelm::bench::calculate<ZelmOrvaneIriClkModel>)->Name("IriClk/calculate");
BENCHMARK(zelm::bench::calculate<ZelmOrvaneIriImuxModel>)->Name("IriImux/calculate");

} // namespace

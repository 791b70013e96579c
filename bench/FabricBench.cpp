#include "bench/BlockBench.h"

#include "fabric/ZelmOrvaneCleLogicModel.h"

namespace
{

BENCHMARK(zelm::bench::calculate<ZelmOrvaneCleLogicModel>)->Name("CleLogic/calculate");

} // namespace

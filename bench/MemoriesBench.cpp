#include "bench/BlockBench.h"

#include "memories/ZelmOrvaneBramModel.h"
#include "memories/ZelmOrvanePlamModel.h"

BENCHMARK(zelm::bench::calculate<ZelmOrvaneBramModel>)->Name("Bram/calculate");
BENCHMARK(zelm::bench::calculate<ZelmOrvanePlamModel>)->Name("Plam/calculate");

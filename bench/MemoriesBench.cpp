#include "bench/BlockBench.h"

#include "memories/ZelmOrvaneBramModel.h"

BENCHMARK(zelm::bench::calculate<ZelmOrvaneBramModel>)->Name("Bram/calculate");

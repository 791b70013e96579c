#include "bench/BlockBench.h"

#include "processing/ZelmOrvaneYondModel.h"

BENCHMARK(zelm::bench::calculate<ZelmOrvaneYondModel>)->Name("Yond/calculate");

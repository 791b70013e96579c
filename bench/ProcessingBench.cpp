#include "bench/BlockBench.h"

#include "processing/ZelmOrvaneHarlModel.h"
#include "processing/ZelmOrvaneYondModel.h"

BENCHMARK(zelm::bench::calculate<ZelmOrvaneHarlModel>)->Name("Harl/calculate");
BENCHMARK(zelm::bench::calculate<ZelmOrvaneYondModel>)->Name("Yond/calculate");

#include "bench/BlockBench.h"

#include "transceivers/ZelmOrvaneLorvModel.h"
#include "transceivers/ZelmOrvaneLorvpModel.h"

BENCHMARK(zelm::bench::calculate<ZelmOrvaneLorvModel>)->Name("Lorv/calculate");
BENCHMARK(zelm::bench::calculate<ZelmOrvaneLorvpModel>)->Name("Lorvp/calculate");

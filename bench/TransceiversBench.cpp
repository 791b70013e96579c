#include "bench/BlockBench.h"

#include "transceivers/ZelmOrvaneLorvModel.h"
#include "transceivers/ZelmOrvaneLorvpModel.h"
#include "transceivers/ZelmOrvaneSarnModel.h"

BENCHMARK(zelm::bench::calculate<ZelmOrvaneLorvModel>)->Name("Lorv/calculate");
BENCHMARK(zelm::bench::calculate<ZelmOrvaneLorvpModel>)->Name("Lorvp/calculate");
BENCHMARK(zelm::bench::calculate<ZelmOrvaneSarnModel>)->Name("Sarn/calculate");

#include "bench/BlockBench.h"

#include "network/ZelmOrvaneDdrmcModel.h"
#include "network/ZelmOrvaneGorbModel.h"
#include "network/ZelmOrvaneNocModel.h"

BENCHMARK(zelm::bench::calculate<ZelmOrvaneNocModel>)->Name("Noc/calculate");
BENCHMARK(zelm::bench::calculate<ZelmOrvaneDdrmcModel>)->Name("Ddrmc/calculate");
BENCHMARK(zelm::bench::calculate<ZelmOrvaneGorbModel>)->Name("Gorb/calculate");

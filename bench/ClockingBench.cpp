#include "bench/BlockBench.h"

#include "clocking/ZelmOrvaneDpllModel.h"
#include "clocking/ZelmOrvanePspllModel.h"
#include "clocking/ZelmOrvaneRuskModel.h"
#include "clocking/ZelmOrvaneVekoModel.h"

BENCHMARK(zelm::bench::calculate<ZelmOrvaneVekoModel>)->Name("Veko/calculate");
BENCHMARK(zelm::bench::calculate<ZelmOrvaneDpllModel>)->Name("Dpll/calculate");
BENCHMARK(zelm::bench::calculate<ZelmOrvaneRuskModel>)->Name("Rusk/calculate");
BENCHMARK(zelm::bench::calculate<ZelmOrvanePspllModel>)->Name("Pspll/calculate");

#include "bench/BlockBench.h"

#include "hardblocks/ZelmOrvaneHscModel.h"
#include "hardblocks/ZelmOrvaneIlknModel.h"
#include "hardblocks/ZelmOrvaneJorlModel.h"
#include "hardblocks/ZelmOrvaneMulmModel.h"
#include "hardblocks/ZelmOrvaneNemtModel.h"
#include "hardblocks/ZelmOrvanePcieb5Model.h"
#include "hardblocks/ZelmOrvanePciebModel.h"
#include "hardblocks/ZelmOrvaneSdfecModel.h"
#include "hardblocks/ZelmOrvaneTuvoModel.h"
#include "hardblocks/ZelmOrvaneWist5Model.h"
#include "hardblocks/ZelmOrvaneWistModel.h"

BENCHMARK(zelm::bench::calculate<ZelmOrvaneHscModel>)->Name("Hsc/calculate");
BENCHMARK(zelm::bench::calculate<ZelmOrvaneIlknModel>)->Name("Ilkn/calculate");
BENCHMARK(zelm::bench::calculate<ZelmOrvaneJorlModel>)->Name("Jorl/calculate");
BENCHMARK(zelm::bench::calculate<ZelmOrvaneMulmModel>)->Name("Mulm/calculate");
BENCHMARK(zelm::bench::calculate<ZelmOrvaneNemtModel>)->Name("Nemt/calculate");
BENCHMARK(zelm::bench::calculate<ZelmOrvanePciebModel>)->Name("Pcieb/calculate");
BENCHMARK(zelm::bench::calculate<ZelmOrvanePcieb5Model>)->Name("Pcieb5/calculate");
BENCHMARK(zelm::bench::calculate<ZelmOrvaneSdfecModel>)->Name("Sdfec/calculate");
BENCHMARK(zelm::bench::calculate<ZelmOrvaneTuvoModel>)->Name("Tuvo/calculate");
BENCHMARK(zelm::bench::calculate<ZelmOrvaneWistModel>)->Name("Wist/calculate");
BENCHMARK(zelm::bench::calculate<ZelmOrvaneWist5Model>)->Name("Wist5/calculate");

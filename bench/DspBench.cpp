#include "bench/BlockBench.h"

#include "dsp/ZelmOrvaneDspActivityModel.h"
#include "dsp/ZelmOrvaneDspConfigModel.h"
#include "dsp/ZelmOrvaneDspCplxModel.h"
#include "dsp/ZelmOrvaneDspFp32Model.h"
#include "dsp/ZelmOrvaneDspInt24Model.h"
#include "dsp/ZelmOrvaneDspInt8Model.h"
#include "dsp/ZelmOrvaneDspLegacyModel.h"

BENCHMARK(zelm::bench::calculate<ZelmOrvaneDspActivityModel>)->Name("DspActivity/calculate");
BENCHMARK(zelm::bench::calculate<ZelmOrvaneDspConfigModel>)->Name("DspConfig/calculate");
BENCHMARK(zelm::bench::calculate<ZelmOrvaneDspCplxModel>)->Name("DspCplx/calculate");
BENCHMARK(zelm::bench::calculate<ZelmOrvaneDspFp32Model>)->Name("DspFp32/calculate");
BENCHMARK(zelm::bench::calculate<ZelmOrvaneDspInt24Model>)->Name("DspInt24/calculate");
BENCHMARK(zelm::bench::calculate<ZelmOrvaneDspInt8Model>)->Name("DspInt8/calculate");
BENCHMARK(zelm::bench::calculate<ZelmOrvaneDspLegacyModel>)->Name("DspLegacy/calculate");

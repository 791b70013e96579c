#include "host/estimate/Estimate.h"
#include "host/report/Report.h"

#include <benchmark/benchmark.h>

#include <cstdlib>

// The example designs once their data files are loaded: what an estimate costs beyond reading.

namespace {

using namespace zelm::host;

Design example(const std::string& name)
{
    setenv("QTA_DATADIR", ZELM_SOURCE_DIR "/data", 1);
    return readDesign(ZELM_SOURCE_DIR "/examples/" + name + ".json");
}

void estimateExample(benchmark::State& state, const std::string& name, Curves curves)
{
    const Design design = example(name);
    estimate(design); // loads
    for (auto _ : state)
        benchmark::DoNotOptimize(estimate(design, curves));
}

void reportExample(benchmark::State& state, const std::string& name)
{
    const Estimate result = estimate(example(name));
    for (auto _ : state)
        benchmark::DoNotOptimize(textReport(result, false));
}

BENCHMARK_CAPTURE(estimateExample, first, "first", Curves::none)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(estimateExample, vision, "vision", Curves::none)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(estimateExample, vision_with_curves, "vision", Curves::drawn)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(reportExample, vision, "vision")->Unit(benchmark::kMillisecond);

} // namespace

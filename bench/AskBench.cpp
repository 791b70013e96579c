#include "host/base/InOrder.h"
#include "host/base/Json.h"
#include "host/design/Include.h"
#include "host/design/Place.h"
#include "host/estimate/Estimate.h"
#include "host/study/Diff.h"
#include "host/study/Fit.h"
#include "host/study/Sensitivity.h"
#include "host/study/Solve.h"

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <unistd.h>

// What an estimate can be asked, of an example design with modes once its data files are loaded, on all processors: the
// reading of the design counts.

namespace {

using namespace zelm::host;

std::string vision()
{
    setenv("QTA_DATADIR", ZELM_SOURCE_DIR "/data", 1);
    const std::string file = ZELM_SOURCE_DIR "/examples/vision.json";
    estimate(readDesign(file)); // loads
    return file;
}

void diffOfVision(benchmark::State& state)
{
    const std::string before = vision();
    JsonSource source;
    Json root = readDesignTree(before, source);
    placeAt(root, "groups[line buffers].inputs.NUM_BRAMS") = 500;
    placeAt(root, "groups[line buffers].inputs.PORT_A_ENABLE_RATE") = 0.9;
    placeAt(root, "groups[detection network].inputs.CORE_LOAD") = 0.6;
    const std::string after =
        (std::filesystem::temp_directory_path() / ("zelm-bench-" + std::to_string(::getpid()) + ".json")).string();
    std::ofstream(after) << jsonText(root);
    for (auto _ : state)
        benchmark::DoNotOptimize(diff({before, after}));
    std::filesystem::remove(after);
}

void solveVision(benchmark::State& state, const std::string& vary)
{
    const std::string file = vision();
    for (auto _ : state)
        benchmark::DoNotOptimize(solve(file, {vary, {"total@MAX <= 60 W", "junction@MAX <= 95 C"}, threadsFor(0)}));
}

void fitVision(benchmark::State& state)
{
    const std::string file = vision();
    for (auto _ : state)
        benchmark::DoNotOptimize(fit(file, {"", "", "", threadsFor(0)}));
}

void sensitivityOfVision(benchmark::State& state)
{
    const std::string file = vision();
    for (auto _ : state)
        benchmark::DoNotOptimize(sensitivity(file, {"total", 0.1, threadsFor(0)}));
}

BENCHMARK(diffOfVision)->Unit(benchmark::kMillisecond)->MeasureProcessCPUTime()->UseRealTime();
BENCHMARK_CAPTURE(solveVision, memories, "groups[line buffers].inputs.NUM_BRAMS=100:2000")
    ->Unit(benchmark::kMillisecond)
    ->MeasureProcessCPUTime()
    ->UseRealTime();
BENCHMARK_CAPTURE(solveVision, load, "groups[detection network].inputs.CORE_LOAD=0.1:1")
    ->Unit(benchmark::kMillisecond)
    ->MeasureProcessCPUTime()
    ->UseRealTime();
BENCHMARK_CAPTURE(solveVision, core_voltage, "rails.VCCINT=0.7:0.9")
    ->Unit(benchmark::kMillisecond)
    ->MeasureProcessCPUTime()
    ->UseRealTime();
BENCHMARK(fitVision)->Unit(benchmark::kMillisecond)->MeasureProcessCPUTime()->UseRealTime();
BENCHMARK(sensitivityOfVision)->Unit(benchmark::kMillisecond)->MeasureProcessCPUTime()->UseRealTime();

} // namespace

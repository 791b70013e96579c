#include "host/base/Json.h"
#include "host/design/Include.h"
#include "host/estimate/EditedDesign.h"
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

enum class Modes { all, none };

void estimateExample(benchmark::State& state, const std::string& name, Curves curves, Modes modes)
{
    Design design = example(name);
    if (modes == Modes::none)
        design.modes.clear();
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

// An example with one value changing, each time to a new one: what a keystroke costs, or, of sums alone, a point of a
// sweep.
void editExample(benchmark::State& state, const std::string& name, const std::string& place, double least, double most,
                 bool isJunctionGiven, Scope scope)
{
    example(name);
    JsonSource source;
    Json root = readDesignTree(ZELM_SOURCE_DIR "/examples/" + name + ".json", source);
    if (isJunctionGiven) {
        root["environment"] = {{"junctionTemperature", 80}};
        root["budgets"].erase("junctionTemperature");
    }
    EditedDesign design(root, source, {place}, Gaps::refused, scope);
    constexpr int steps = 100000;
    int step = 0;
    for (auto _ : state) {
        design.set(0, least + (most - least) * step / steps);
        benchmark::DoNotOptimize(design.estimate());
        step = (step + 1) % steps;
    }
}

BENCHMARK_CAPTURE(estimateExample, first, "first", Curves::none, Modes::all)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(estimateExample, vision, "vision", Curves::none, Modes::all)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(estimateExample, vision_without_modes, "vision", Curves::none, Modes::none)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(estimateExample, vision_with_curves, "vision", Curves::drawn, Modes::all)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(editExample, vision_junction_given, "vision", "groups[image pipeline nets].inputs.TOGGLE_RATE", 0.1,
                  0.2, true, Scope::whole)
    ->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(editExample, vision_junction_solved, "vision", "groups[image pipeline nets].inputs.TOGGLE_RATE", 0.1,
                  0.2, false, Scope::whole)
    ->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(editExample, vision_ambient, "vision", "environment.ambientTemperature", 20.0, 60.0, false,
                  Scope::whole)
    ->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(editExample, vision_ambient_swept, "vision", "environment.ambientTemperature", 20.0, 60.0, false,
                  Scope::sums)
    ->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(reportExample, vision, "vision")->Unit(benchmark::kMillisecond);

} // namespace

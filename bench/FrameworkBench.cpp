#include "bench/BlockBench.h"

#include "framework/ZelmOrvaneSignalModel.h"
#include "framework/ZelmTable.h"

#include <string>
#include <unordered_map>
#include <vector>

namespace {

using Table = std::unordered_map<std::string, float>;
using Params = ZelmOrvaneSignalParams;

// A table in the size and key shape of the leakage coefficients.
const Table& table()
{
    static const Table filled = [] {
        Table t;
        for (int device = 0; device < 24; ++device)
            for (const char* process : {"TYP", "MAX"})
                for (const char* rail : {"VCCINT", "VCCRAM", "VCCPSFP", "MLORVAVTT"})
                    for (const char* coefficient : {"A", "B", "C", "D", "E", "CONST"})
                        t["DEVICE_" + std::to_string(device) + "." + process + "." + rail + "." + coefficient] = 1.0f;
        return t;
    }();
    return filled;
}

// The look-up as one writes it first: ten strings by value, a vector of ten, a joined string.
[[gnu::noinline]] float naiveLookUp(const Table& t, std::string k1, std::string k2, std::string k3, std::string k4,
                                    std::string k5, std::string k6, std::string k7, std::string k8, std::string k9,
                                    std::string k10)
{
    const std::vector<std::string> keys{k1, k2, k3, k4, k5, k6, k7, k8, k9, k10};
    std::string joined;
    for (std::size_t i = 0; i < keys.size(); ++i) {
        if (keys[i].empty())
            continue;
        joined += keys[i];
        if (i + 1 < keys.size() && !keys[i + 1].empty())
            joined += ".";
    }
    const auto found = t.find(joined);
    return found == t.end() ? zelm::unsetFloat : found->second;
}

void lookUpFourKeysNaive(benchmark::State& state)
{
    const std::string device = "DEVICE_7";
    const std::string process = "MAX";
    for (auto _ : state)
        benchmark::DoNotOptimize(naiveLookUp(table(), device, process, "MLORVAVTT", "CONST", "", "", "", "", "", ""));
}
BENCHMARK(lookUpFourKeysNaive);

void lookUpFourKeys(benchmark::State& state)
{
    const std::string device = "DEVICE_7";
    const std::string process = "MAX";
    zelm::Table<float> flat;
    for (const auto& [key, value] : table())
        flat.insert_or_assign(key, value);
    const zelm::Key deviceKey(device); // as a run keeps those of its string cells
    const zelm::Key processKey(process);
    for (auto _ : state)
        benchmark::DoNotOptimize(flat.find(deviceKey, processKey, zelm::Key("MLORVAVTT"), zelm::Key("CONST")));
}
BENCHMARK(lookUpFourKeys);

void lookUpFourKeysTenArguments(benchmark::State& state)
{
    const std::string device = "DEVICE_7";
    const std::string process = "MAX";
    for (auto _ : state)
        benchmark::DoNotOptimize(
            ZelmHelperUtils::getCfgDataFromVar(table(), device, process, "MLORVAVTT", "CONST", "", "", "", "", "", ""));
}
BENCHMARK(lookUpFourKeysTenArguments);

BENCHMARK(zelm::bench::calculate<ZelmOrvaneSignalModel>)->Name("Signal/calculate");

void cellAccess(benchmark::State& state)
{
    Params params;
    for (auto _ : state)
        benchmark::DoNotOptimize(params[Params::CLOCK_FREQ]);
}
BENCHMARK(cellAccess);

void nameToCell(benchmark::State& state)
{
    const std::string name = "ROUTING_COMPLEXITY";
    for (auto _ : state)
        benchmark::DoNotOptimize(Params::string_to_float_enum(name));
}
BENCHMARK(nameToCell);

void cellToName(benchmark::State& state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(Params::enum_to_string(Params::ROUTING_COMPLEXITY));
}
BENCHMARK(cellToName);

void reflect(benchmark::State& state)
{
    const Params params;
    for (auto _ : state)
        benchmark::DoNotOptimize(params.reflect());
}
BENCHMARK(reflect);

} // namespace

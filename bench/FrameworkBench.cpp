#include "bench/Naive.h"

#include "device/ZelmOrvaneStaticData.h"
#include "framework/ZelmKey.h"
#include "framework/ZelmOrvaneSignalData.h"
#include "framework/ZelmOrvaneSignalParams.h"
#include "io/ZelmOrvaneSelvData.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <initializer_list>
#include <tuple>

namespace zelm::bench {

namespace {

using Params = ZelmOrvaneSignalParams;
using Static = ZelmOrvaneStaticData;

// ---- A look-up in the shipped tables, by chains of one to five keys: naive, by getter, by a formula's keys ----

template <class LookUp, class Keys>
void time(benchmark::State& state, LookUp lookUp, const Keys& keys)
{
    for (auto _ : state)
        std::apply([&](const auto&... key) { benchmark::DoNotOptimize(lookUp(key...)); }, keys);
}

template <class Part, class... Texts>
std::array<Part, sizeof...(Texts)> keysOf(Texts... texts)
{
    return {Part(std::string_view(texts))...};
}

template <class Data>
void naive(benchmark::State& state, const char* group, std::initializer_list<const char*> texts)
{
    const NaiveTable table = naiveTable(keysOfTable<Data>(group));
    NaiveKeys keys;
    std::copy(texts.begin(), texts.end(), keys.begin());
    for (auto _ : state)
        benchmark::DoNotOptimize(naiveLookUp(table, keys));
}

// The same chain in all three forms.
#define LOOK_UP(count, Data, group, table, ...)                                                                        \
    void naive##count(benchmark::State& state)                                                                         \
    {                                                                                                                  \
        naive<Data>(state, group, {__VA_ARGS__});                                                                      \
    }                                                                                                                  \
    void getter##count(benchmark::State& state)                                                                        \
    {                                                                                                                  \
        const auto get = [&data = shipped<Data>()](const auto&... key) { return data.get##table(key...); };            \
        time(state, get, keysOf<std::string>(__VA_ARGS__));                                                            \
    }                                                                                                                  \
    void formula##count(benchmark::State& state)                                                                       \
    {                                                                                                                  \
        const auto find = [&data = shipped<Data>()](const auto&... key) { return data.find##table(key...); };          \
        time(state, find, keysOf<Key>(__VA_ARGS__));                                                                   \
    }                                                                                                                  \
    BENCHMARK(naive##count);                                                                                           \
    BENCHMARK(getter##count);                                                                                          \
    BENCHMARK(formula##count);
LOOK_UP(1, ZelmOrvaneSignalData, "PER_NODE_CAP", PerNodeCap, "OTHER")
LOOK_UP(2, ZelmOrvaneSelvData, "OBUF", Obuf, "SSTL12", "VCCO_AC")
LOOK_UP(3, Static, "VOLTAGE_RANGE", VoltageRange, "NOM", "VCCINT", "MP_STD")
LOOK_UP(4, Static, "VT_COEFFICIENT", VtCoefficient, "ZQ4410", "TYP", "VCCINT", "CONST")
LOOK_UP(5, Static, "SKU_LIST", SkuList, "SPEED_1", "LP", "STANDARD", "EXTENDED", "OD_NO")
#undef LOOK_UP

// ---- Cells and names ----

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

} // namespace zelm::bench

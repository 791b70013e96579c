// Every block's calculate, on its defaults and the shipped data, against the naive form of the look-ups that it makes,
// keys ready: what it would spend on bare look-ups. Both are timed in turns, so that "ratio", and "ofOneLookUp" to one
// of them on average, hold on a busy machine.

#include "bench/Naive.h"

#include "framework/ZelmRecalculation.h"
#include "framework/ZelmWatcher.h"

#include "BlockHeaders.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <functional>
#include <map>

namespace zelm::bench {

namespace {

using KeysOfTable = std::vector<std::string> (*)(std::string_view group);

// The look-ups of a run, in their order.
class LookUps final : public Watcher {
public:
    explicit LookUps(KeysOfTable keysOf) : Watcher(Wants::pulls), m_keysOf(keysOf) {}

    void onLookUp(const LookUp& lookUp) override
    {
        auto [table, isNew] = m_tables.try_emplace(lookUp.table.group);
        if (isNew)
            table->second = naiveTable(m_keysOf(lookUp.table.group));
        NaiveKeys keys;
        std::transform(lookUp.keys.begin(), lookUp.keys.end(), keys.begin(),
                       [](const Key& key) { return std::string(key.text()); });
        m_all.push_back({&table->second, std::move(keys)});
    }

    void repeat() const
    {
        for (const auto& [table, keys] : m_all)
            benchmark::DoNotOptimize(naiveLookUp(*table, keys));
    }

    std::size_t count() const
    {
        return m_all.size();
    }

private:
    struct Asked {
        const NaiveTable* table;
        NaiveKeys keys;
    };

    KeysOfTable m_keysOf;
    std::map<std::string_view, NaiveTable> m_tables;
    std::vector<Asked> m_all;
};

double secondsOf(const std::function<void()>& work)
{
    constexpr int kTurn = 16; // runs between two looks at the clock
    const auto start = std::chrono::steady_clock::now();
    for (int i = 0; i < kTurn; ++i)
        work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count() / kTurn;
}

// Work, against the look-ups that calculate makes. Without the block's types, so that it is compiled once.
void compare(benchmark::State& state, KeysOfTable keysOf, const std::function<void()>& calculate,
             const std::function<void()>& work)
{
    calculate(); // sets the defaults
    LookUps lookUps(keysOf);
    {
        const Watching watching(lookUps);
        calculate();
    }

    double working = 0.0;
    double lookingUp = 0.0;
    for (auto _ : state) {
        const double seconds = secondsOf(work);
        lookingUp += secondsOf([&] { lookUps.repeat(); });
        working += seconds;
        state.SetIterationTime(seconds);
    }
    const auto count = static_cast<double>(lookUps.count());
    state.counters["lookUps"] = count;
    if (lookUps.count() > 0) {
        state.counters["ratio"] = working / lookingUp;
        state.counters["ofOneLookUp"] = working / lookingUp * count;
    }
}

template <class Model>
void calculate(benchmark::State& state)
{
    using Data = typename Model::Data;
    shipped<Data>();
    typename Model::Params params;
    const auto keysOf = [](std::string_view group) { return keysOfTable<Data>(group); };
    const auto work = [&] {
        Model::getGlobal().calculate(params);
        benchmark::DoNotOptimize(params);
    };
    compare(state, keysOf, work, work);
}

// What depends on the junction temperature, over and over at another one: the thermal loop's work.
void editTemperature(benchmark::State& state)
{
    using Model = ZelmOrvaneStaticModel;
    using Data = Model::Data;
    using Params = Model::Params;
    const Data& data = shipped<Data>();
    const auto keysOf = [](std::string_view group) { return keysOfTable<Data>(group); };
    Params params;
    Params edited;
    Recalculation<Model> recalculation(Model::getGlobal(), edited, data);
    float junction = 0.0f;
    compare(
        state, keysOf, [&] { Model::getGlobal().calculate(params); },
        [&] {
            junction = junction < 100.0f ? junction + 0.01f : 0.0f;
            recalculation.set(Params::JUNCTION_TEMPERATURE, junction);
            recalculation.recalculate();
            benchmark::DoNotOptimize(edited);
        });
}

BENCHMARK(editTemperature)->Name("Static/temperatureEdit")->UseManualTime()->MinTime(0.01);

#define BLOCK(name, folder, title)                                                                                     \
    BENCHMARK(calculate<ZelmOrvane##name##Model>)->Name(#name "/calculate")->UseManualTime()->MinTime(0.01);
#include "host/blocks/BlockList.def"

} // namespace

} // namespace zelm::bench

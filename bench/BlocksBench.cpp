// Every block's calculate, on its defaults and the shipped data, against the naive form of the look-ups that it makes,
// keys ready: what it would spend on bare look-ups. Both are timed in turns, so that "ratio" holds on a busy machine.

#include "bench/Naive.h"

#include "framework/ZelmWatcher.h"

#include "BlockHeaders.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <map>

namespace zelm::bench {

namespace {

// The look-ups of a run, in their order.
template <class Data>
class LookUps final : public Watcher {
public:
    LookUps() : Watcher(Wants::pulls) {}

    void onLookUp(const LookUp& lookUp) override
    {
        auto [table, isNew] = m_tables.try_emplace(lookUp.table.group);
        if (isNew)
            table->second = naiveTable<Data>(lookUp.table.group);
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

    std::map<std::string_view, NaiveTable> m_tables;
    std::vector<Asked> m_all;
};

template <class Work>
double secondsOf(Work work)
{
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

template <class Model>
void calculate(benchmark::State& state)
{
    constexpr int kTurn = 16; // runs between two looks at the clock
    shipped<typename Model::Data>();
    const Model& model = Model::getGlobal();
    typename Model::Params params;
    model.calculate(params); // sets the defaults
    LookUps<typename Model::Data> lookUps;
    {
        const Watching watching(lookUps);
        model.calculate(params);
    }

    double calculating = 0.0;
    double lookingUp = 0.0;
    for (auto _ : state) {
        const double seconds = secondsOf([&] {
            for (int i = 0; i < kTurn; ++i) {
                model.calculate(params);
                benchmark::DoNotOptimize(params);
            }
        });
        lookingUp += secondsOf([&] {
            for (int i = 0; i < kTurn; ++i)
                lookUps.repeat();
        });
        calculating += seconds;
        state.SetIterationTime(seconds / kTurn);
    }
    state.counters["lookUps"] = static_cast<double>(lookUps.count());
    if (lookUps.count() > 0)
        state.counters["ratio"] = calculating / lookingUp;
}

#define BLOCK(name, folder, title)                                                                                     \
    BENCHMARK(calculate<ZelmOrvane##name##Model>)->Name(#name "/calculate")->UseManualTime()->MinTime(0.01);
#include "host/blocks/BlockList.def"

} // namespace

} // namespace zelm::bench

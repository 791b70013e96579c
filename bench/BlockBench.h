#pragma once

#include <benchmark/benchmark.h>

#include <cstdlib>

namespace zelm::bench {

/// Times calculate of a block on its defaults and the shipped data.
template <class Model>
void calculate(benchmark::State& state)
{
    setenv("QTA_DATADIR", ZELM_SOURCE_DIR "/data", 1);
    typename Model::Params params;
    const Model& model = Model::getGlobal();
    for (auto _ : state) {
        model.calculate(params);
        benchmark::DoNotOptimize(params);
    }
}

} // namespace zelm::bench

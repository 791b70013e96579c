#include "bench/BlockBench.h"

#include "device/ZelmOrvanePartsModel.h"
#include "device/ZelmOrvaneStaticModel.h"
#include "device/ZelmOrvaneSysmonModel.h"

#include <string>
#include <vector>

namespace
{

using Data = ZelmOrvaneStaticData;

BENCHMARK(zelm::bench::calculate<ZelmOrvanePartsModel>)->Name("Parts/calculate");
BENCHMARK(zelm::bench::calculate<ZelmOrvaneStaticModel>)->Name("Static/calculate");
BENCHMARK(zelm::bench::calculate<ZelmOrvaneSysmonModel>)->Name("Sysmon/calculate");

// The look-ups that one calculate of Static makes, strings and all prepared: every row of the tables that belongs to
// the default device or a resource, its process and its SKU. The measure that Static/calculate is held against.
struct LookUps {
    struct Row {
        std::string key, process, rail, last;
    };
    std::vector<Row> terms, laws, bins, volts, factors, inrushes;

    explicit LookUps(const Data& data)
    {
        const std::string device = "ZQ4410";
        const std::string process = "TYP";
        const std::string sku = "MP_STD";
        for (const std::string& key : data.getCfgKeys({"VT_COEFFICIENT"}, false)) {
            if (key.starts_with("Z") && key != device)
                continue;
            for (const std::string& rail : data.getCfgKeys({"VT_COEFFICIENT", key, process}, false)) {
                for (const char* term : {"A", "B", "C", "D", "E", "CONST"})
                    terms.push_back({key, process, rail, term});
                for (const char* term : {"C1", "C2"})
                    laws.push_back({key, process, rail, term});
                bins.push_back({key, process, rail, sku}); // the site's key for the coarser one: as long, or a miss
            }
        }
        for (const std::string& rail : data.getCfgKeys({"VOLTAGE_RANGE", "NOM"}, false)) {
            volts.push_back({"NOM", rail, sku, ""});
            factors.push_back({device, rail, "", ""});
            inrushes.push_back({device, rail, "", ""});
        }
    }
};

void staticLookUps(benchmark::State& state)
{
    setenv("QTA_DATADIR", ZELM_SOURCE_DIR "/data", 1);
    const Data& data = Data::getGlobal();
    const LookUps all(data);
    for (auto _ : state) {
        for (const auto& [key, process, rail, term] : all.terms)
            benchmark::DoNotOptimize(data.findVtCoefficient(key, process, rail, term));
        for (const auto& [key, process, rail, term] : all.laws)
            benchmark::DoNotOptimize(data.findVoltageScaling(key, process, rail, term));
        for (const auto& [key, process, rail, sku] : all.bins)
            benchmark::DoNotOptimize(data.findBinningFactors(key, process, rail, sku));
        for (const auto& [corner, rail, sku, none] : all.volts)
            benchmark::DoNotOptimize(data.findVoltageRange(corner, rail, sku));
        for (const auto& [device, rail, none, nothing] : all.factors)
            benchmark::DoNotOptimize(data.findTotalPowerFactors(device, rail));
        for (const auto& [device, rail, none, nothing] : all.inrushes)
            benchmark::DoNotOptimize(data.findPowerupCurrent(device, rail));
    }
    state.counters["lookUps"] = static_cast<double>(all.terms.size() + all.laws.size() + all.bins.size() +
                                                    all.volts.size() + all.factors.size() + all.inrushes.size());
}
BENCHMARK(staticLookUps)->Name("Static/lookUps");

} // namespace

#include "bench/BlockBench.h"

#include "device/ZelmOrvanePartsModel.h"
#include "device/ZelmOrvaneStaticModel.h"
#include "device/ZelmOrvaneSysmonModel.h"

#include <string>
#include <vector>

namespace {

using Data = ZelmOrvaneStaticData;

BENCHMARK(zelm::bench::calculate<ZelmOrvanePartsModel>)->Name("Parts/calculate");
BENCHMARK(zelm::bench::calculate<ZelmOrvaneStaticModel>)->Name("Static/calculate");
BENCHMARK(zelm::bench::calculate<ZelmOrvaneSysmonModel>)->Name("Sysmon/calculate");

// The look-ups that one calculate of Static makes on its defaults, with all strings prepared: the measure that
// Static/calculate is held against. It may cost at most 1.5 times as much.
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
                bins.push_back({binningKeyOf(key), process, rail, sku});
            }
        }
        laws.push_back({device, process, "VCCAUX", "C3"});
        for (const std::string& rail : data.getCfgKeys({"VOLTAGE_RANGE", "NOM"}, false)) {
            const int rails = rail.starts_with("MLORV") ? 2 : 1; // the LORVP rails share these rows
            for (int i = 0; i < rails; ++i) {
                volts.push_back({"NOM", rail, sku, ""});
                factors.push_back({device, rail, "", ""});
                if (rail != "VCCINTWIST")
                    inrushes.push_back({device, rail, "", ""});
            }
        }
    }

    static std::string binningKeyOf(const std::string& key)
    {
        for (const char* coarse : {"BRAM_CORE", "PLAM_CORE", "YOND_BASE_CORE"})
            if (key.starts_with(coarse))
                return coarse;
        return key;
    }

    std::size_t count() const
    {
        return terms.size() + laws.size() + bins.size() + volts.size() + factors.size() + inrushes.size();
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
    state.counters["lookUps"] = static_cast<double>(all.count());
}
BENCHMARK(staticLookUps)->Name("Static/lookUps");

} // namespace

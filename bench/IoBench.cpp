#include "bench/BlockBench.h"

#include "io/ZelmOrvaneIologicModel.h"
#include "io/ZelmOrvaneKelpModel.h"
#include "io/ZelmOrvaneNaltModel.h"
#include "io/ZelmOrvaneSelvModel.h"

#include <cstdlib>
#include <sstream>
#include <string>
#include <vector>

namespace {

// Standards whose formulas make the same look-ups in their rows and in CAP_DATA, each key as often as it is looked up.
struct Family {
    const char* standards;
    const char* rowKeys;
    const char* capKeys = "";
};

std::vector<std::string> words(const std::string& text)
{
    std::istringstream stream(text);
    std::vector<std::string> found;
    for (std::string word; stream >> word;)
        found.push_back(word);
    return found;
}

struct LookUp {
    std::string standard;
    std::string key;
};

// Every look-up of one calculate, its keys ready.
struct LookUps {
    std::vector<LookUp> obuf, ibuf;
    std::vector<std::string> cap;

    void add(std::vector<LookUp>& table, const char* commonKeys, const std::vector<Family>& families)
    {
        for (const Family& family : families)
            for (const std::string& standard : words(family.standards)) {
                for (const std::string& key : words(std::string(commonKeys) + " " + family.rowKeys))
                    table.push_back({standard, key});
                for (const std::string& key : words(family.capKeys))
                    cap.push_back(key);
            }
    }
};

template <class Data>
const Data& shipped()
{
    setenv("QTA_DATADIR", ZELM_SOURCE_DIR "/data", 1);
    return Data::getGlobal();
}

template <class Data>
void lookUp(const Data& data, const LookUps& all)
{
    for (const LookUp& entry : all.obuf)
        benchmark::DoNotOptimize(data.findObuf(entry.standard, entry.key));
    for (const LookUp& entry : all.ibuf)
        benchmark::DoNotOptimize(data.findIbuf(entry.standard, entry.key));
    for (const std::string& key : all.cap)
        benchmark::DoNotOptimize(data.findCapData(key));
}

// The bare cost of Selv's look-ups: what its calculate can't do without.
void selvLookUps(benchmark::State& state)
{
    const auto& data = shipped<ZelmOrvaneSelvData>();
    LookUps all;
    const char* fast = "CIO_HP CPKG";
    const char* slow = "CIO_HP CPKG_LS";
    all.add(
        all.obuf, "VCCINT_IO_DC VCCINT_IO_AC VCCAUX_DC VCCAUX_AC VCCO_PREDRV_AC VCCO_AC PW",
        {{"SSTL12 SSTL135 SSTL15_VOH75 HSTL_I HSTL_I_12 DIFF_SSTL12 DIFF_SSTL135 DIFF_SSTL15_VOH75 DIFF_HSTL_I "
          "DIFF_HSTL_I_12 SSTL15_VOH80 DIFF_SSTL15_VOH80",
          "VCCO_PREDRV_DC OBUF_LOAD VCCO VCCO VCCO VCCO VCCO", fast},
         {"POD10 POD12_FIR DIFF_POD10 DIFF_POD12 DIFF_POD12_FIR", "VCCO_PREDRV_DC OBUF_LOAD VCCO VCCO VCCO VCCO", fast},
         {"POD12", "VCCO_PREDRV_DC OBUF_LOAD RDRV VCCO VCCO VCCO VCCO", fast},
         {"LVSTL06_12 DIFF_LVSTL06_12 LVSTL_11_VOH33 DIFF_LVSTL_11_VOH33 LVSTL_11_VOH50 DIFF_LVSTL_11_VOH50",
          "OBUF_LOAD VCCO VCCO VCCO VCCO", fast},
         {"LVDS15", "VCCO_PREDRV_DC VCCO_DC VCCO"},
         {"LVDS15_FIR", "VCCO_PREDRV_DC VCCO_DC VCCO TERM"},
         {"MIPI_DPHY_DCI_HS", "VCCO_PREDRV_DC OBUF_LOAD VCCO_DC VCCO", fast},
         {"MIPI_DPHY_LP", "VCCO_PREDRV_DC OBUF_LOAD VCCO_DC", slow},
         {"DIFF_HSUL_12", "VCCO_PREDRV_DC OBUF_LOAD", fast},
         {"HSUL_12 LVDCI_15 HSLVDCI_15 LVCMOS15_2 LVCMOS15_4 LVCMOS15_6 LVCMOS15_8 LVCMOS15_12 LVCMOS12_2 "
          "LVCMOS12_4 LVCMOS12_6 LVCMOS12_8",
          "VCCO_PREDRV_DC OBUF_LOAD", slow}});
    all.add(all.ibuf, "VCCINT_IO_DC VCCINT_IO_AC VCCAUX_DC VCCAUX_AC VCCO_AC",
            {{"SSTL12 SSTL135 SSTL15_VOH75 HSTL_I HSTL_I_12 DIFF_SSTL12 DIFF_SSTL135 DIFF_SSTL15_VOH75 DIFF_HSTL_I "
              "DIFF_HSTL_I_12 SSTL15_VOH80 DIFF_SSTL15_VOH80 POD10 POD12 DIFF_POD10 DIFF_POD12",
              "PW VCCO VCCO VCCO VCCO VCCO"},
             {"HSUL_12 DIFF_HSUL_12", "PW VCCO VCCO VCCO"},
             {"LVDCI_15 HSLVDCI_15", "VCCO VCCO VCCO VCCO VCCO"},
             {"LVSTL06_12 DIFF_LVSTL06_12 LVSTL_11_VOH33 DIFF_LVSTL_11_VOH33 LVSTL_11_VOH50 DIFF_LVSTL_11_VOH50",
              "PW VCCO VCCO"},
             {"LVDS15", "PW VCCO DIFFTERM"},
             {"LVCMOS15 LVCMOS12", "PW VCCO"},
             {"MIPI_DPHY_DCI_HS", "PW VCCO VCCO_DC ODT"},
             {"MIPI_DPHY_LP", "PW VCCO VCCO_DC"}});
    const int mipi = 6; // three input currents of the low-power mode, three multipliers
    for (auto _ : state) {
        lookUp(data, all);
        benchmark::DoNotOptimize(data.findSimData("SIM_VOLTAGE"));
        for (int i = 0; i < mipi; ++i)
            benchmark::DoNotOptimize(data.findMipiData("MIPI_LP_DATARATE"));
    }
    state.counters["lookUps"] = static_cast<double>(all.obuf.size() + all.ibuf.size() + all.cap.size() + 1 + mipi);
}

void naltLookUps(benchmark::State& state)
{
    const auto& data = shipped<ZelmOrvaneNaltData>();
    LookUps all;
    all.add(all.obuf, "VCCINT_IO_DC VCCINT_IO_AC VCCAUX_DC VCCAUX_AC VCCO_AC OBUF_LOAD VCCO_DC VCCO_DC VCCO_DC PW PW",
            {{"SSTL18_I LVTTL_4 LVTTL_8 LVTTL_12 LVCMOS33_4 LVCMOS33_8 LVCMOS33_12 LVCMOS25_4 LVCMOS25_8 LVCMOS25_12 "
              "LVCMOS18_4 LVCMOS18_8 LVCMOS18_12 HSTL_I_18",
              "TERM", "CIO_HP CPKG"}});
    all.add(all.ibuf, "VCCINT_IO_DC VCCINT_IO_AC VCCAUX_DC VCCAUX_AC VCCO_AC",
            {{"DIFF_HSTL_I_18 DIFF_SSTL18_I HSTL_I_18 SSTL18_I", "PW"},
             {"LVDS_25 LVPECL SUB_LVDS SLVS_400_25 LVTTL LVCMOS33 LVCMOS25 LVCMOS18", "VCCO_DC"}});
    for (auto _ : state)
        lookUp(data, all);
    state.counters["lookUps"] = static_cast<double>(all.obuf.size() + all.ibuf.size() + all.cap.size());
}

BENCHMARK(zelm::bench::calculate<ZelmOrvaneSelvModel>)->Name("Selv/calculate");
BENCHMARK(selvLookUps)->Name("Selv/lookUps");
BENCHMARK(zelm::bench::calculate<ZelmOrvaneNaltModel>)->Name("Nalt/calculate");
BENCHMARK(naltLookUps)->Name("Nalt/lookUps");
BENCHMARK(zelm::bench::calculate<ZelmOrvaneIologicModel>)->Name("Iologic/calculate");
BENCHMARK(zelm::bench::calculate<ZelmOrvaneKelpModel>)->Name("Kelp/calculate");

} // namespace

#include "host/blocks/RollUp.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace zelm::host {

namespace {

constexpr Role kRail = Role::rail;

constexpr Output kOutputs[] = {
    // clang-format off
    {"Signal",     "SIGNAL_POWER",                          kRail,         "VCCINT",      ""},
    {"CleLogic",   "LOGIC_POWER",                           kRail,         "VCCINT",      ""},
    {"CleLogic",   "TESK_LOGIC_POWER",                      Role::shown,   "VCCINT",      ""},
    {"CleClk",     "CLE_CLOCK_POWER",                       kRail,         "VCCINT",      ""},
    {"ClkDist",    "CLK_NETWORK_VCCINT_PWR",                kRail,         "VCCINT",      ""},
    {"ClkDist",    "CLK_NETWORK_VCCRAM_PWR",                kRail,         "VCCRAM",      ""},
    {"ClkDist",    "CLK_BUF_VCCRAM_PWR",                    kRail,         "VCCRAM",      ""},
    {"IriClk",     "CLOCK_POWER",                           kRail,         "VCCINT",      ""},
    {"IriImux",    "IMUX_POWER",                            kRail,         "VCCINT",      ""},

    {"Bram",       "VCCINT_POWER",                          kRail,         "VCCINT",      ""},
    {"Bram",       "VCCRAM_POWER",                          kRail,         "VCCRAM",      ""},
    {"Plam",       "VCCINT_PWR_N_PLAMS",                    kRail,         "VCCINT",      ""},
    {"Plam",       "VCCRAM_PWR_N_PLAMS",                    kRail,         "VCCRAM",      ""},

    {"DspInt24",   "DYNAMIC_VCCINT_POWER",                  kRail,         "VCCINT",      ""},
    {"DspInt8",    "DYNAMIC_VCCINT_POWER",                  kRail,         "VCCINT",      ""},
    {"DspLegacy",  "DYNAMIC_VCCINT_POWER",                  kRail,         "VCCINT",      ""},
    {"DspCplx",    "DYNAMIC_VCCINT_POWER",                  kRail,         "VCCINT",      ""},
    {"DspFp32",    "DYNAMIC_VCCINT_POWER",                  kRail,         "VCCINT",      ""},

    {"Veko",       "VCCAUX_PWR",                            kRail,         "VCCAUX",      ""},
    {"Veko",       "VCCRAM_PWR",                            kRail,         "VCCRAM",      ""},
    {"Dpll",       "VCCAUX_PWR",                            kRail,         "VCCAUX",      ""},
    {"Dpll",       "VCCINT_PWR",                            kRail,         "VCCINT",      ""},
    {"Dpll",       "VCCRAM_PWR",                            kRail,         "VCCRAM",      ""},
    {"Rusk",       "VCCAUX_PWR",                            kRail,         "VCCAUX",      ""},
    {"Rusk",       "VCCINTIO_PWR",                          kRail,         "VCCINTIO",    ""},
    {"Pspll",      "VCC_AUX_CURRENT",                       kRail,         "VCCAUX",      ""},
    {"Pspll",      "VCCINT_CURRENT",                        kRail,         "VCCINT",      ""},

    {"Selv",       "VCCIO_POWER",                           kRail,         "VCCINTIO",    ""},
    {"Selv",       "VCCAUX_POWER",                          kRail,         "VCCAUX",      ""},
    {"Selv",       "VCCO_POWER",                            kRail,         "VCCO",        ""},
    {"Selv",       "OFFCHIP_POWER",                         Role::offchip, "",            ""},
    {"Nalt",       "VCCINT_POWER",                          kRail,         "VCCINT",      ""},
    {"Nalt",       "VCCAUX_POWER",                          kRail,         "VCCAUX",      ""},
    {"Nalt",       "VCCO_POWER",                            kRail,         "VCCO",        ""},
    {"Nalt",       "OFFCHIP_POWER",                         Role::offchip, "",            ""},
    {"Iologic",    "VCC_IO_PWR",                            kRail,         "VCCINTIO",    ""},
    {"Kelp",       "RP_TOTAL_POWER",                        kRail,         "VCCINTIO",    ""},

    {"Lorv",       "VCCINT_POWER",                          kRail,         "VCCINT",      ""},
    {"Lorv",       "MLORVAVCC_POWER",                       kRail,         "MLORVAVCC",   ""},
    {"Lorv",       "MLORVAVTT_POWER",                       kRail,         "MLORVAVTT",   ""},
    {"Lorv",       "MLORVVCCAUX_POWER",                     kRail,         "MLORVVCCAUX", ""},
    {"Lorvp",      "VCCINT_POWER",                          kRail,         "VCCINT",      ""},
    {"Lorvp",      "MLORVAVCC_POWER",                       kRail,         "MLORVPAVCC",  ""},
    {"Lorvp",      "MLORVAVTT_POWER",                       kRail,         "MLORVPAVTT",  ""},
    {"Lorvp",      "MLORVVCCAUX_POWER",                     kRail,         "MLORVPVCCAUX",""},
    {"Sarn",       "VCCINT_POWER",                          kRail,         "VCCINT",      ""},
    {"Sarn",       "VCCINT_GT_POWER",                       kRail,         "VCCINTGT",    ""},
    {"Sarn",       "MSARNAVCC_POWER",                       kRail,         "MSARNAVCC",   ""},
    {"Sarn",       "MSARNAVTT_POWER",                       kRail,         "MSARNAVTT",   ""},
    {"Sarn",       "MSARNVCCAUX_POWER",                     kRail,         "MSARNVCCAUX", ""},

    {"Noc",        "VCC_SOC_PWR",                           kRail,         "VCCSOC",      ""},
    {"Ddrmc",      "VCCSOC_POWER",                          kRail,         "VCCSOC",      ""},
    // The island's leakage is the static model's: carried there as a used count.
    {"Gorb",       "GORB_TOP_DYNAMIC_POWER",                kRail,         "VCCPSLP",     ""},
    {"Gorb",       "GORB_TOP_STATIC_POWER",                 Role::shown,   "VCCPSLP",     ""},

    {"Nemt",       "NEMT_VCCINT_POWER",                     kRail,         "VCCINT",      ""},
    {"Nemt",       "NEMT_VCCAUX_POWER",                     kRail,         "VCCAUX",      ""},
    {"Jorl",       "VCCINT_POWER",                          kRail,         "VCCINT",      ""},
    {"Ilkn",       "VCCINT_POWER",                          kRail,         "VCCINT",      ""},
    {"Hsc",        "VCCINT_POWER",                          kRail,         "VCCINT",      ""},
    {"Tuvo",       "POWER",                                 kRail,         "VCCINT",      ""},
    {"Sdfec",      "POWER",                                 kRail,         "VCCINT",      ""},
    {"Pcieb",      "POWER",                                 kRail,         "VCCINT",      ""},
    {"Pcieb5",     "POWER",                                 kRail,         "VCCINT",      ""},
    {"Mulm",       "VCCINT_POWER",                          kRail,         "VCCINT",      ""},
    {"Wist",       "VCCINT_POWER_A0",                       kRail,         "VCCINTWIST",  ""},
    {"Wist",       "VCCINT_POWER_A1",                       kRail,         "VCCINTWIST",  ""},
    {"Wist",       "VCCAUX_POWER",                          kRail,         "VCCAUX",      ""},
    {"Wist5",      "DYNAMIC_PWR_VCC_WIST5",                 kRail,         "VCCWIST5",    ""},
    {"Wist5",      "DYNAMIC_PWR_VCCAUX",                    kRail,         "VCCAUX",      ""},

    {"Yond",       "APU_CPU_POWER",                         kRail,         "VCCPSFP",     ""},
    {"Yond",       "L2_MEMORY_POWER",                       kRail,         "VCCPSFP",     ""},
    {"Yond",       "FP_INTERCONNECT_POWER",                 kRail,         "VCCPSFP",     ""},
    {"Yond",       "CCI_POWER",                             kRail,         "VCCPSFP",     ""},
    {"Yond",       "FPD_PLL_DYNAMIC_VCCINT_POWER",          kRail,         "VCCPSFP",     ""},
    {"Yond",       "FPD_PLL_DYNAMIC_VCCAUX_POWER",          kRail,         "VCCAUX",      ""},
    {"Yond",       "IOU_WITHOUT_IO_POWER",                  kRail,         "VCCPSLP",     ""},
    {"Yond",       "GEM0_POWER",                            kRail,         "VCCPSLP",     ""},
    {"Yond",       "GEM1_POWER",                            kRail,         "VCCPSLP",     ""},
    {"Yond",       "USB0_POWER",                            kRail,         "VCCPSLP",     ""},
    {"Yond",       "LP_INTECONNECT_POWER",                  kRail,         "VCCPSLP",     ""},
    {"Yond",       "DUAL_R5_POWER",                         kRail,         "VCCPSLP",     ""},
    {"Yond",       "OCM_MEMORY_POWER",                      kRail,         "VCCPSLP",     ""},
    {"Yond",       "TCM_MEMORY_POWER",                      kRail,         "VCCPSLP",     ""},
    {"Yond",       "LPD_PLL_VCCPSLP_DYNAMIC_POWER",         kRail,         "VCCPSLP",     ""},
    {"Yond",       "LPD_PLL_VCCAUX_DYNAMIC_POWER",          kRail,         "VCCAUX",      ""},
    {"Yond",       "LPD_GEM0_DYNAMIC_VCCINT_POWER",         kRail,         "VCCPSLP",     ""},
    {"Yond",       "LPD_GEM1_DYNAMIC_VCCINT_POWER",         kRail,         "VCCPSLP",     ""},
    {"Yond",       "LPD_LOW_PER_IO_DYNAMIC_VCCINT_POWER",   kRail,         "VCCPSLP",     ""},
    {"Yond",       "LPD_GEM0_DYNAMIC_MIO_POWER",            kRail,         "VCCOHARLIO2", ""},
    {"Yond",       "LPD_GEM1_DYNAMIC_MIO_POWER",            kRail,         "VCCOHARLIO2", ""},
    {"Yond",       "LPD_LOW_PER_IO_DYNAMIC_MIO_POWER",      kRail,         "VCCOHARLIO2", ""},

    {"Harl",       "VCCINT_HARL_POWER",                     kRail,         "VCCHARL",     ""},
    {"Harl",       "VCCAUX_HARL_POWER",                     kRail,         "VCCAUXHARL",  ""},
    {"Harl",       "VCCHARLIO0_POWER",                      kRail,         "VCCOHARLIO0", ""},
    {"Harl",       "VCCHARLIO1_POWER",                      kRail,         "VCCOHARLIO1", ""},
    {"Harl",       "VCC_FIO_POWER",                         kRail,         "VCCOFIO",     ""},
    {"Harl",       "HARL_AUXHARLSYSMON_POWER",              kRail,         "VCCAUXHARL",  ""},
    {"Harl",       "HARL_AMSAUXPOWER",                      kRail,         "VCCAUX",      ""},
    {"Harl",       "HARL_AMSVCCSOCPOWER",                   kRail,         "VCCSOC",      ""},
    {"Harl",       "HARL_AMSINTPOWER",                      kRail,         "VCCINT",      ""},
    {"Harl",       "HARL_AMSHARLPOWER",                     kRail,         "VCCHARL",     ""},

    {"Sysmon",     "VCCHARL_POWER",                         kRail,         "VCCHARL",     "VCCHARL_SCALING"},
    {"Sysmon",     "VCCPSLP_POWER",                         kRail,         "VCCPSLP",     "VCCPSLP_SCALING"},
    {"Sysmon",     "VCCPSFP_POWER",                         kRail,         "VCCPSFP",     "VCCPSFP_SCALING"},
    {"Sysmon",     "VCCSOC_POWER",                          kRail,         "VCCSOC",      "VCCSOC_SCALING"},
    {"Sysmon",     "VCCAUXHARL_POWER",                      kRail,         "VCCAUXHARL",  "VCCAUXHARL_SCALING"},
    {"Sysmon",     "VCCAUXSYSMON_POWER",                    kRail,         "VCCAUXSMON",  "VCCAUXSMON_SCALING"},
    {"Sysmon",     "VCCAUX_POWER",                          kRail,         "VCCAUX",      "VCCAUX_SCALING"},
    // clang-format on
};

constexpr PerUnit kPerUnit[] = {
    {"DspCplx", "NUM_DSP"},
    {"Lorv", "NUM_LORVQUAD_CHANNELS"},
    {"Lorvp", "NUM_LORVP_QUAD_CHANNELS"},
    {"Sarn", "NUM_SARNQUAD_CHANNELS"},
};

constexpr RailInput kRailInputs[] = {
    {"Selv", "VCC_IO", "VCCINTIO"},
    {"Iologic", "VCC_IO", "VCCINTIO"},
    {"Kelp", "VCC_IO", "VCCINTIO"},
    {"Selv", "VCCO15", "VCCO"},
    {"Nalt", "VCCO", "VCCO"},
    {"Noc", "VCC_SOC", "VCCSOC"},
    {"Ddrmc", "VCC_SOC", "VCCSOC"},
    {"Gorb", "PSUPPLY_VOLTAGE", "VCCPSLP"},
    {"Lorvp", "MLORVAVCC", "MLORVPAVCC"},
    {"Lorvp", "MLORVAVTT", "MLORVPAVTT"},
    {"Lorvp", "MLORVVCCAUX", "MLORVPVCCAUX"},
    {"Sarn", "VCCINT_GT", "VCCINTGT"},
    {"Wist", "VCCINT", "VCCINTWIST"},
    {"Wist5", "VCC_WIST5", "VCCWIST5"},
    {"Wist5", "VCCAUX_WIST", "VCCAUX"},
    {"Harl", "VCCINTHARL", "VCCHARL"},
    {"Yond", "LPD_MIO_GEM0_VOLTAGE", "VCCOHARLIO2"},
    {"Yond", "LPD_MIO_GEM1_VOLTAGE", "VCCOHARLIO2"},
    {"Yond", "LPD_MIO_LOW_PER_IO_VOLTAGE", "VCCOHARLIO2"},
};

constexpr NestedRail kNestedRails[] = {{"VCCINTWIST", "VCCINT"}, {"VCCME", "VCCINT"}};

struct Bank {
    float volts;
    const char* rail;
};
constexpr std::array<Bank, 8> kBanks{{{1.0f, "VCCO10"},
                                      {1.1f, "VCCO11"},
                                      {1.2f, "VCCO12"},
                                      {1.35f, "VCCO135"},
                                      {1.5f, "VCCO15"},
                                      {1.8f, "VCCO18"},
                                      {2.5f, "VCCO25"},
                                      {3.3f, "VCCO33"}}};

} // namespace

std::span<const Output> outputs()
{
    return kOutputs;
}

std::span<const PerUnit> perUnit()
{
    return kPerUnit;
}

std::span<const RailInput> railInputs()
{
    return kRailInputs;
}

std::span<const NestedRail> nestedRails()
{
    return kNestedRails;
}

std::string bankRail(float volts)
{
    const auto* nearest = std::min_element(kBanks.begin(), kBanks.end(), [&](const Bank& a, const Bank& b) {
        return std::fabs(a.volts - volts) < std::fabs(b.volts - volts);
    });
    return nearest->rail;
}

} // namespace zelm::host

#include "host/blocks/Uses.h"

#include <algorithm>

namespace zelm::host {

namespace {

constexpr int kChannelsPerQuad = 4;
constexpr int kSlicesPerComplex = 2; // DSP slices of a complex multiplier

constexpr StaticCount kCounts[] = {
    {"USED_BRAMS_ACTIVE", "Bram", "NUM_BRAMS", 1},
    {"USED_PLAMS_ACTIVE", "Plam", "NUM_PLAMS", 1},
    {"USED_PS_LPD_R5", "Yond", "RPU_CORES", 1},
    {"USED_PS_LPD_TCM", "Yond", "TCM_MEMORY_CORES", 1},
    {"USED_PS_LPD_OCM", "Yond", "OCM_MEMORY_CORES", 1},
    {"USED_PS_FPD_A72", "Yond", "CPU_CORES", 1},
    {"USED_PS_FPD_L2CACHE", "Yond", "L2_MEMORY_ON_OFF", 1},
    {"USED_OCM2S_ACTIVE", "Gorb", "", 1},
    {"USED_LORV_POWER_QUADS", "Lorv", "NUM_LORVQUAD_CHANNELS", kChannelsPerQuad},
    {"USED_LORVP_POWER_QUADS", "Lorvp", "NUM_LORVP_QUAD_CHANNELS", kChannelsPerQuad},
    {"USED_SARN_POWER_QUADS", "Sarn", "NUM_SARNQUAD_CHANNELS", kChannelsPerQuad},
};

constexpr ResourceUse kUses[] = {
    {"LUT", "CleLogic", "INSTANCE_COUNT", 1, 1, "INSTANCE_TYPE", "LUT"},
    {"FF", "CleLogic", "INSTANCE_COUNT", 1, 1, "INSTANCE_TYPE", "REG"},
    {"BRAM", "Bram", "NUM_BRAMS"},
    {"PLAM", "Plam", "NUM_PLAMS"},
    {"DSP", "DspInt24", "NUM_DSP"},
    {"DSP", "DspInt8", "NUM_DSP"},
    {"DSP", "DspLegacy", "NUM_DSP"},
    {"DSP", "DspCplx", "NUM_DSP", 1, kSlicesPerComplex},
    {"DSP", "DspFp32", "NUM_DSP"},
    {"VEKO", "Veko", ""},
    {"DPLL", "Dpll", ""},
    {"RUSK", "Rusk", ""},
    {"CLOCK_MANAGER", "Veko", ""},
    {"CLOCK_MANAGER", "Dpll", ""},
    {"CLOCK_MANAGER", "Rusk", ""},
    {"SELV_IO", "Selv", ""},
    {"NALT_IO", "Nalt", ""},
    {"LORV_QUAD", "Lorv", "NUM_LORVQUAD_CHANNELS", kChannelsPerQuad},
    {"LORVP_QUAD", "Lorvp", "NUM_LORVP_QUAD_CHANNELS", kChannelsPerQuad},
    {"SARN_QUAD", "Sarn", "NUM_SARNQUAD_CHANNELS", kChannelsPerQuad},
    {"DDRMC", "Ddrmc", ""},
    {"GORB", "Gorb", ""},
    {"NEMT", "Nemt", "NEMT_CORES"},
    {"JORL", "Jorl", "NUM_JORL"},
    {"ILKN", "Ilkn", "NUM_ILKN"},
    {"HSC", "Hsc", "NUM_HSC"},
    {"TUVO", "Tuvo", ""},
    {"SDFEC", "Sdfec", ""},
    {"PCIEB", "Pcieb", ""},
    {"PCIEB5", "Pcieb5", ""},
    {"MULM", "Mulm", ""},
    {"WIST", "Wist", ""},
    {"WIST5", "Wist5", ""},
    {"YOND", "Yond", ""},
    {"HARL", "Harl", ""},
};

constexpr BankKind kBankKinds[] = {{"Selv", "SELV", "VCCO15"}, {"Nalt", "NALT", "VCCO"}};

constexpr ClockInput kClockInputs[] = {
    {"Signal", "CLOCK_FREQ"},    {"CleLogic", "CLOCK_FREQ"}, {"IriClk", "CLOCK_FREQ"},   {"Bram", "PORT_A_CLOCK"},
    {"Bram", "PORT_B_CLOCK"},    {"Plam", "CLOCK_FREQ"},     {"DspInt24", "CLOCK_FREQ"}, {"DspInt8", "CLOCK_FREQ"},
    {"DspLegacy", "CLOCK_FREQ"}, {"DspCplx", "CLOCK_FREQ"},  {"DspFp32", "CLOCK_FREQ"},  {"Selv", "CLOCK_FREQ"},
    {"Nalt", "CLOCK_FREQ"},      {"Iologic", "FREQUENCY"},
};

constexpr ClockLoad kClockLoads[] = {
    {"FFS_USING_CLK", "CleLogic", "INSTANCE_COUNT", 1, "INSTANCE_TYPE", "REG"},
    {"SRLS_USING_CLK", "CleLogic", "INSTANCE_COUNT", 1, "INSTANCE_TYPE", "LUT_SRL"},
    {"LUTRAMS_USING_CLK", "CleLogic", "INSTANCE_COUNT", 1, "INSTANCE_TYPE", "LUT_DRAM"},
    {"BRAMS_USING_CLK", "Bram", "NUM_BRAMS"},
    {"PLAMS_USING_CLK", "Plam", "NUM_PLAMS"},
    {"DSPS_USING_CLK", "DspInt24", "NUM_DSP"},
    {"DSPS_USING_CLK", "DspInt8", "NUM_DSP"},
    {"DSPS_USING_CLK", "DspLegacy", "NUM_DSP"},
    {"DSPS_USING_CLK", "DspCplx", "NUM_DSP", kSlicesPerComplex},
    {"DSPS_USING_CLK", "DspFp32", "NUM_DSP"},
};

constexpr ClockSite kClockSites[] = {
    {"AVAIL_BRAMS", "BRAM"}, {"AVAIL_DSPS", "DSP"}, {"AVAIL_FFS", "FF"}, {"AVAIL_PLAMS", "PLAM"}, {"NUM_FSR", "FSR"}};

} // namespace

std::span<const StaticCount> staticCounts()
{
    return kCounts;
}

std::span<const ResourceUse> resourceUses()
{
    return kUses;
}

std::span<const BankKind> bankKinds()
{
    return kBankKinds;
}

const BankKind* bankKindOf(std::string_view block)
{
    const auto* found = std::find_if(std::begin(kBankKinds), std::end(kBankKinds),
                                     [&](const BankKind& kind) { return kind.block == block; });
    return found == std::end(kBankKinds) ? nullptr : found;
}

std::span<const ClockInput> clockInputs()
{
    return kClockInputs;
}

bool takesClock(std::string_view block)
{
    return std::any_of(std::begin(kClockInputs), std::end(kClockInputs),
                       [&](const ClockInput& input) { return input.block == block; });
}

std::span<const ClockLoad> clockLoads()
{
    return kClockLoads;
}

std::span<const ClockSite> clockSites()
{
    return kClockSites;
}

} // namespace zelm::host

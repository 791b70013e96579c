#include "host/Carry.h"

#include "host/IoBank.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>

namespace zelm::host {

namespace {

constexpr int kChannelsPerQuad = 4;

// How many units of a cell a group has in all; without a cell, how many instances. Counts of counts outgrow an int.
std::int64_t units(const Running& group, std::string_view cell)
{
    const std::int64_t instances = group.count;
    return cell.empty() ? instances : instances * group.whole(cell);
}

struct Count {
    std::string_view staticCell;
    std::string_view block;
    std::string_view cell; ///< empty: the instances themselves
    int perCount;          ///< so many units are one count, the last one may be partly used
};

constexpr Count kCounts[] = {
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

struct Use {
    std::string_view resource;
    std::string_view block;
    std::string_view cell;   ///< empty: the instances themselves
    int perUnit = 1;         ///< so many units share one
    std::string_view kind{}; ///< a string cell that must begin with a word for the group to count
    std::string_view word{};
};

constexpr Use kUses[] = {
    {"LUT", "CleLogic", "INSTANCE_COUNT", 1, "INSTANCE_TYPE", "LUT"},
    {"FF", "CleLogic", "INSTANCE_COUNT", 1, "INSTANCE_TYPE", "REG"},
    {"BRAM", "Bram", "NUM_BRAMS"},
    {"PLAM", "Plam", "NUM_PLAMS"},
    {"DSP", "DspInt24", "NUM_DSP"},
    {"DSP", "DspInt8", "NUM_DSP"},
    {"DSP", "DspLegacy", "NUM_DSP"},
    {"DSP", "DspCplx", "NUM_DSP"},
    {"DSP", "DspFp32", "NUM_DSP"},
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

std::int64_t roundedUp(std::int64_t units, int perCount)
{
    return (units + perCount - 1) / perCount;
}

// What a cell can hold of a count: the largest int stands for an unset one.
int forCell(std::int64_t count)
{
    constexpr std::int64_t most = std::numeric_limits<int>::max() - 1;
    return static_cast<int>(std::clamp<std::int64_t>(count, 0, most));
}

bool counts(const Use& use, const Running& group)
{
    return use.block == group.block->name && (use.kind.empty() || group.text(use.kind).starts_with(use.word));
}

// The pins of one bank, by the device's own pins and banks.
int pinsPerBank(const ResolvedDevice& device, const std::string& bank)
{
    constexpr int typical = 54;
    const auto count = [&](const std::string& resource) {
        const auto found = device.resources.find(resource);
        return found == device.resources.end() ? 0 : found->second;
    };
    const int banks = count(bank + "_BANK");
    return banks > 0 && count(bank + "_IO") >= banks ? count(bank + "_IO") / banks : typical;
}

struct BankKind {
    const char* block;
    const char* words; ///< in the names of the static model's counts and the catalogue's resources
};
constexpr std::array<BankKind, 2> kBankKinds{{{"Selv", "SELV"}, {"Nalt", "NALT"}}};

std::string bankCell(const std::string& rail, const BankKind& kind)
{
    return fmt::format("USED_{}_{}_BANKS", rail, kind.words);
}

} // namespace

std::map<std::string, int> usedCounts(const std::vector<Running>& groups, const ResolvedDevice& device,
                                      const Design& design, std::vector<Carried>& carried)
{
    std::map<std::string, int> used;
    for (const Count& count : kCounts) {
        std::int64_t sum = 0;
        for (const Running& group : groups) {
            if (group.block->name == count.block)
                sum += units(group, count.cell);
        }
        used[std::string(count.staticCell)] = forCell(roundedUp(sum, count.perCount));
    }
    for (const BankKind& kind : kBankKinds) {
        std::map<std::string, std::int64_t> pins;
        for (const Running& group : groups) {
            if (group.block->name == kind.block)
                pins[group.bankRail()] += group.count;
        }
        for (const ZelmCellInfo& cell : block("Static").cells) {
            if (cell.kind == ZelmCellInfo::Kind::userInput && cell.name.ends_with(std::string(kind.words) + "_BANKS"))
                used[std::string(cell.name)] = 0;
        }
        for (const auto& [rail, number] : pins) {
            if (block("Static").findCell(bankCell(rail, kind)))
                used[bankCell(rail, kind)] = forCell(roundedUp(number, pinsPerBank(device, kind.words)));
        }
    }
    for (const auto& [cell, value] : design.staticInputs)
        used.erase(cell);
    for (const auto& [cell, count] : used)
        carried.push_back({"groups", "Static." + cell, std::to_string(count)});
    return used;
}

std::vector<Utilisation> utilisation(const std::vector<Running>& groups, const ResolvedDevice& device)
{
    std::vector<Utilisation> result;
    for (const Use& use : kUses) {
        const auto available = device.resources.find(std::string(use.resource));
        if (available == device.resources.end())
            continue;
        std::int64_t sum = 0;
        for (const Running& group : groups) {
            if (counts(use, group))
                sum += units(group, use.cell);
        }
        auto entry = std::find_if(result.begin(), result.end(),
                                  [&](const Utilisation& known) { return known.resource == use.resource; });
        if (entry == result.end())
            entry = result.insert(entry, {std::string(use.resource), 0.0, static_cast<double>(available->second)});
        entry->used += static_cast<double>(roundedUp(sum, use.perUnit));
    }
    std::erase_if(result, [](const Utilisation& use) { return use.used == 0.0 && use.available == 0.0; });
    return result;
}

} // namespace zelm::host

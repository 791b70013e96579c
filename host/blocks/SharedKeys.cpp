#include "host/blocks/SharedKeys.h"

#include "host/base/Error.h"
#include "host/base/Text.h"
#include "host/blocks/Block.h"
#include "host/blocks/DataLines.h"

#include <fmt/format.h>
#include <libconfig.h++>

#include <algorithm>
#include <memory>

namespace zelm::host {

namespace {

using Naming = std::string (*)(std::string);

// ---- How words are written as keys ----

std::string same(std::string text)
{
    return text;
}

// zq4410_kibo4471_1_LP_e_S is of ZQ4410, in package ZQ4410_KIBO4471.
std::string deviceOfPart(std::string part)
{
    return upper(part.substr(0, part.find('_')));
}

std::string packageOfPart(std::string part)
{
    return upper(part.substr(0, part.find('_', part.find('_') + 1)));
}

std::string belowDevice(std::string package)
{
    const std::size_t behind = package.find('_');
    if (behind != std::string::npos)
        package[behind] = '.';
    return package;
}

// The catalogue's formulas cut a device's last character off.
std::string resourceKey(std::string device)
{
    if (!device.empty())
        device.pop_back();
    return lower(device).append("_");
}

std::string withUnderscores(std::string text)
{
    std::replace(text.begin(), text.end(), ' ', '_');
    return text;
}

// ---- The tables that share words ----

enum class In { keys, values };

// Groups of a block's file, "*" for any name, whose keys or values are words of one kind.
struct Place {
    std::string_view block;
    std::string_view groups;
    Naming word = same; // that a key stands for; null where keys bind no other table
    Naming key = same;  // that each word must have here; null where none need be
    In where = In::keys;
};

// Places that hold the same words.
using Shared = std::vector<Place>;

const std::vector<Shared>& sharedWords() // NOLINT(readability-function-size): a table
{
    static const std::vector<Shared> all{
        // devices
        {{"Parts", "DEVICE_TO_FAMILY_MAP", upper, lower},
         {"Parts", "DEVICE_CORE_VOLTAGE_MAP", upper, lower},
         {"Parts", "FAMILY_TO_DEFAULT_DEVICE", upper, nullptr, In::values},
         {"Parts", "DEVICE_DATA.*", deviceOfPart, nullptr},
         {"Parts", "RESOURCE_DATA", nullptr, resourceKey},
         {"Static", "INT_TO_EXT_DEV_MAP", same, same, In::values},
         {"Static", "SUPPLY_LIST"},
         {"Static", "VT_COEFFICIENT", nullptr},
         {"Static", "BINNING_FACTORS", nullptr},
         {"Static", "VOLTAGE_SCALING", nullptr},
         {"Static", "TOTAL_POWER_FACTORS"},
         {"Static", "PART_STATUS"},
         {"Static", "UNBONDED_GT_INFO"},
         {"Static", "POWERUP_CURRENT"},
         {"Noc", "DEVICE_INT_NAMES"},
         {"Sysmon", "DEVICE_DATA", nullptr}},
        // devices in packages
        {{"Parts", "DEVICE_DATA.*", packageOfPart, nullptr},
         {"Static", "GT_INFO"},
         {"Static", "PART_STATUS", nullptr, belowDevice}},
        // series
        {{"Parts", "DEVICE_TO_FAMILY_MAP", withUnderscores, nullptr, In::values},
         {"Parts", "FAMILY_TO_DEFAULT_DEVICE"}},
        // resources
        {{"Parts", "RESOURCE_DATA.*"}},
        // devices by the names of their characterisation
        {{"Noc", "DEVICE_INT_NAMES", same, nullptr, In::values},
         {"Noc", "CLOCK_BUFFER_MAX"},
         {"Noc", "CLOCK_BUFFER_DDR"},
         {"Noc", "DEVICE_DATA"},
         {"Nemt", "SHIM_DATA"},
         {"Nemt", "NEMT_STREAMS"}},
        // rails
        {{"Static", "SUPPLY_LIST.*"},
         {"Static", "VOLTAGE_RANGE.*"},
         {"Static", "TOTAL_POWER_FACTORS.*"},
         {"Static", "POWERUP_CURRENT.*"}},
        // voltage grades, power screens, temperature grades, overdrives
        {{"Static", "SKU_LIST.*"}},
        {{"Static", "SKU_LIST.*.*"}},
        {{"Static", "SKU_LIST.*.*.*"}},
        {{"Static", "SKU_LIST.*.*.*.*"}},
        // SKUs
        {{"Static", "SKU_LIST.*.*.*.*", same, nullptr, In::values},
         {"Static", "VOLTAGE_RANGE.*.*"},
         {"Static", "BINNING_FACTORS.*.*.*"}},
        // kinds of transceiver
        {{"Static", "GT_INFO.*"}, {"Static", "UNBONDED_GT_INFO.*"}},
        // I/O standards
        {{"Selv", "IBUF"}, {"Selv", "IO_LIST.INPUT"}},
        {{"Selv", "OBUF"}, {"Selv", "IO_LIST.OUTPUT"}},
        {{"Nalt", "IBUF"}, {"Nalt", "IO_LIST.INPUT"}},
        {{"Nalt", "OBUF"}, {"Nalt", "IO_LIST.OUTPUT"}},
        // families of DSP arithmetic, and their facts
        {{"DspConfig", "DSP_CONFIG_MAP"}, {"DspConfig", "DSP_CONFIG_DATA"}},
        {{"DspConfig", "DSP_CONFIG_DATA.*"}},
        // facts of an operational mode
        {{"DspActivity", "DSP_CONFIG_DATA.*"}},
    };
    return all;
}

// ---- Reading the files ----

class Files {
public:
    // Null if the file can't be read.
    const libconfig::Setting* root(std::string_view blockName)
    {
        std::unique_ptr<libconfig::Config>& cfg = m_read[std::string(blockName)];
        if (!cfg) {
            cfg = std::make_unique<libconfig::Config>();
            try {
                cfg->readFile(loadablePath(block(blockName).dataFile()).c_str());
            } catch (const libconfig::ConfigException&) {
                cfg = std::make_unique<libconfig::Config>();
            } catch (const Error&) {
                cfg = std::make_unique<libconfig::Config>();
            }
        }
        const std::string name = fmt::format("ZelmOrvane{}Data", blockName);
        return cfg->exists(name) ? &cfg->lookup(name) : nullptr;
    }

private:
    std::map<std::string, std::unique_ptr<libconfig::Config>> m_read;
};

// Calls visit(path, group) for each group that a pattern stands for; path is the group's, below the table.
template <class Visit>
void forEachGroup(const libconfig::Setting& at, std::string_view pattern, const std::string& path, Visit visit)
{
    if (!at.isGroup())
        return;
    if (pattern.empty()) {
        visit(path, at);
        return;
    }
    const std::size_t dot = std::min(pattern.find('.'), pattern.size());
    const std::string_view name = pattern.substr(0, dot);
    const std::string_view rest = pattern.substr(std::min(dot + 1, pattern.size()));
    for (const libconfig::Setting& child : at) {
        if (name == "*" || name == child.getName())
            forEachGroup(child, rest, fmt::format("{}{}{}", path, path.empty() ? "" : ".", child.getName()), visit);
    }
}

std::set<std::string> wordsAt(const Place& place, const libconfig::Setting& group)
{
    std::set<std::string> words;
    for (const libconfig::Setting& child : group) {
        if (place.where == In::keys)
            words.insert(place.word(child.getName()));
        else if (child.getType() == libconfig::Setting::TypeString)
            words.insert(place.word(child.c_str()));
    }
    return words;
}

// A group without rows counts: what it lacks is told row by row.
bool holds(const libconfig::Setting& group, const std::string& key)
{
    const std::size_t dot = key.find('.');
    const std::string name = key.substr(0, dot);
    if (!group.exists(name))
        return false;
    const libconfig::Setting& child = group[name.c_str()];
    return dot == std::string::npos || (child.isGroup() && holds(child, key.substr(dot + 1)));
}

} // namespace

std::map<std::string, RowSet> rowsMissingBesideOthers()
{
    Files files;
    std::map<std::string, RowSet> missing;
    for (const Shared& places : sharedWords()) {
        std::set<std::string> words;
        for (const Place& place : places) {
            const libconfig::Setting* root = files.root(place.block);
            if (root && place.word)
                forEachGroup(*root, place.groups, "", [&](const std::string&, const libconfig::Setting& group) {
                    words.merge(wordsAt(place, group));
                });
        }
        for (const Place& place : places) {
            const libconfig::Setting* root = files.root(place.block);
            if (!root || !place.key)
                continue;
            const bool byKey = place.where == In::keys;
            forEachGroup(*root, place.groups, "", [&](const std::string& path, const libconfig::Setting& group) {
                const std::size_t dot = std::min(path.find('.'), path.size());
                const std::string above = path.substr(std::min(dot + 1, path.size()));
                const std::set<std::string> values = byKey ? std::set<std::string>() : wordsAt(place, group);
                for (const std::string& word : words) {
                    const std::string key = place.key(word);
                    if (byKey ? holds(group, key) : values.contains(word))
                        continue;
                    missing[std::string(place.block)].emplace(
                        path.substr(0, dot),
                        fmt::format("{}{}{}{}", above, above.empty() ? "" : ".", byKey ? "" : "of ", key));
                }
            });
        }
    }
    return missing;
}

bool hasSharedWord(std::string_view block, std::string_view table, std::string_view key)
{
    const auto levels = [](std::string_view path) { return std::count(path.begin(), path.end(), '.'); };
    for (const Shared& places : sharedWords()) {
        for (const Place& place : places) {
            if (place.block == block && place.groups.substr(0, place.groups.find('.')) == table &&
                levels(place.groups) == levels(key))
                return true;
        }
    }
    return false;
}

} // namespace zelm::host

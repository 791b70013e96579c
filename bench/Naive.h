#pragma once

// The look-up as one writes it first, on the tables as one keeps them first: what the library's own is held against.

#include <array>
#include <cstdlib>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace zelm::bench {

using NaiveTable = std::unordered_map<std::string, float>;
using NaiveKeys = std::array<std::string, 10>;

/// Ten strings by value, a vector of ten, a joined string.
[[gnu::noinline]] inline float naiveLookUp(const NaiveTable& table, std::string k1, std::string k2, std::string k3,
                                           std::string k4, std::string k5, std::string k6, std::string k7,
                                           std::string k8, std::string k9, std::string k10)
{
    const std::vector<std::string> keys{k1, k2, k3, k4, k5, k6, k7, k8, k9, k10};
    std::string joined;
    for (std::size_t i = 0; i < keys.size(); ++i) {
        if (keys[i].empty())
            continue;
        joined += keys[i];
        if (i + 1 < keys.size() && !keys[i + 1].empty())
            joined += ".";
    }
    const auto found = table.find(joined);
    return found == table.end() ? 0.0f : found->second;
}

inline float naiveLookUp(const NaiveTable& table, const NaiveKeys& k)
{
    return naiveLookUp(table, k[0], k[1], k[2], k[3], k[4], k[5], k[6], k[7], k[8], k[9]);
}

/// The shipped data of a block.
template <class Data>
const Data& shipped()
{
    setenv("QTA_DATADIR", ZELM_SOURCE_DIR "/data", 1);
    return Data::getGlobal();
}

/// All keys of a table of the shipped data.
template <class Data>
std::vector<std::string> keysOfTable(std::string_view group)
{
    return shipped<Data>().getCfgKeys({std::string(group)}, true);
}

inline NaiveTable naiveTable(std::vector<std::string> keys)
{
    NaiveTable table;
    for (std::string& key : keys)
        table[std::move(key)] = 1.0f;
    return table;
}

} // namespace zelm::bench

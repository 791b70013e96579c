#pragma once

#include "framework/LibconfigAutoConvert.h"
#include "framework/ZelmTable.h"
#include "framework/ZelmTableFile.h"

#include <bit>
#include <cstdint>
#include <string>
#include <type_traits>
#include <vector>

namespace zelm::test {

template <class T>
std::string rowsOf(const Table<T>& table)
{
    std::string rows;
    table.forEach([&](std::string_view key, const T& value) {
        rows.append(key).append(" = ");
        if constexpr (std::is_same_v<T, std::string>)
            rows += value;
        else if constexpr (std::is_same_v<T, float>)
            rows += std::to_string(std::bit_cast<std::uint32_t>(value));
        else
            rows += std::to_string(value);
        rows += '\n';
    });
    return rows;
}

/// What a plain file gives otherwise than libconfig as a table of that type; empty if nothing, or if it leaves it to
/// that.
template <class T>
std::string differenceIn(const TableFile& file, libconfig::Config& cfg, const std::string& block,
                         const std::string& group)
{
    Table<T> plain;
    if (!file.load(block, group, plain))
        return {};
    Table<T> table;
    std::vector<std::string> path{block, group};
    if (!ZelmHelperUtils::loadCfgDataToVar(&cfg, path, table, true))
        return block + "." + group + " is no group to libconfig";
    if (rowsOf(plain) == rowsOf(table))
        return {};
    return block + "." + group + ": expected\n" + rowsOf(table) + "but it is\n" + rowsOf(plain);
}

/// What the reader of plain data files makes of a file otherwise than libconfig; empty if nothing.
inline std::string differenceFromLibconfig(const std::string& path)
{
    const TableFile file(path);
    if (!file.isPlain())
        return {};
    libconfig::Config cfg;
    try {
        cfg.readFile(path.c_str());
    } catch (const libconfig::ParseException& error) {
        return "libconfig refuses line " + std::to_string(error.getLine()) + ": " + error.getError();
    }
    std::string differences;
    const libconfig::Setting& root = cfg.getRoot();
    for (int i = 0; i < root.getLength(); ++i) {
        const std::string block = root[i].getName();
        for (int j = 0; root[i].isGroup() && j < root[i].getLength(); ++j) {
            const std::string group = root[i][j].getName();
            differences += differenceIn<bool>(file, cfg, block, group);
            differences += differenceIn<int>(file, cfg, block, group);
            differences += differenceIn<float>(file, cfg, block, group);
            differences += differenceIn<std::string>(file, cfg, block, group);
        }
    }
    return differences;
}

} // namespace zelm::test

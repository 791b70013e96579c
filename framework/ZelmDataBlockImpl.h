#pragma once

// The bodies of ZelmDataBlock, for the one source file that instantiates it for a block.

#include "framework/ZelmDataBlock.h"
#include "framework/ZelmReflection.h"
#include "framework/ZelmTableFile.h"

#include <libconfig.h++>

template <class Derived>
const Derived& ZelmDataBlock<Derived>::getGlobal()
{
    return getMutableGlobal();
}

template <class Derived>
Derived& ZelmDataBlock<Derived>::getMutableGlobal()
{
    static Derived instance;
    return instance;
}

template <class Derived>
std::string ZelmDataBlock<Derived>::className() const
{
    return std::string(Derived::name);
}

template <class Derived>
std::string ZelmDataBlock<Derived>::reflect() const
{
    zelm::Reflection out;
    Derived::visitTables(static_cast<const Derived&>(*this),
                         [&](std::string_view, std::string_view member, const auto& table) {
                             out.table(member, table);
                             return true;
                         });
    return out.text();
}

template <class Derived>
bool ZelmDataBlock<Derived>::loadCfgData()
{
    ++m_loads;
    std::vector<std::string> path{std::string(Derived::name)};
    const std::string fileName = "orvane/" + path.front() + ".cfg";
    const auto loadPlain = [&] {
        const zelm::TableFile file(filePath(fileName));
        return file.isPlain() && Derived::visitTables(static_cast<Derived&>(*this),
                                                      [&](std::string_view group, std::string_view, auto& table) {
                                                          return file.load(Derived::name, group, table);
                                                      });
    };
    if (loadPlain())
        return true;
    libconfig::Config cfg;
    readFile(&cfg, fileName);
    return Derived::visitTables(static_cast<Derived&>(*this),
                                [&](std::string_view group, std::string_view, auto& table) {
                                    path.emplace_back(group);
                                    const bool loaded = ZelmHelperUtils::loadCfgDataToVar(&cfg, path, table, true);
                                    path.pop_back();
                                    return loaded;
                                });
}

template <class Derived>
bool ZelmDataBlock<Derived>::reset()
{
    Derived::visitTables(static_cast<Derived&>(*this), [](std::string_view, std::string_view, auto& table) {
        table.clear();
        return true;
    });
    return loadCfgData();
}

template <class Derived>
std::vector<std::string> ZelmDataBlock<Derived>::getCfgKeys(std::vector<std::string> keys, bool whole) const
{
    std::vector<std::string> found;
    const bool listTables = keys.empty();
    const std::string wanted = listTables ? std::string() : keys.front();
    if (!listTables)
        keys.erase(keys.begin());
    Derived::visitTables(static_cast<const Derived&>(*this),
                         [&](std::string_view group, std::string_view, const auto& table) {
                             if (listTables)
                                 found.emplace_back(group);
                             else if (group == wanted)
                                 found = ZelmHelperUtils::getCfgKeyVectorFromVar(table, keys, whole);
                             return true;
                         });
    return found;
}

template <class Derived>
bool ZelmDataBlock<Derived>::isEmpty(std::string_view group) const
{
    return Derived::visitTables(
        static_cast<const Derived&>(*this),
        [&](std::string_view name, std::string_view, const auto& table) { return name != group || table.size() == 0; });
}

template <class Derived>
std::string_view ZelmDataBlock<Derived>::groupOf(const void* table) const
{
    std::string_view found;
    Derived::visitTables(static_cast<const Derived&>(*this),
                         [&](std::string_view group, std::string_view, const auto& own) {
                             if (&own == table)
                                 found = group;
                             return found.empty();
                         });
    return found;
}

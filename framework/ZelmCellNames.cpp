#include "framework/ZelmCellNames.h"

#include "framework/ZelmReflection.h"

#include <cstddef>
#include <utility>

namespace zelm {

namespace {

// Calls add for each name of an enum's source text but the last, which is no cell.
template <class Add>
void forEachName(std::string enumSource, Add add)
{
    std::erase(enumSource, ' ');
    std::string_view rest = enumSource;
    for (std::size_t comma = rest.find(','); comma != std::string_view::npos; comma = rest.find(',')) {
        add(std::string(rest.substr(0, comma)));
        rest.remove_prefix(comma + 1);
    }
}

template <class Value>
void reflectCells(std::string& text, const CellNames::Names& names, std::span<const Value> cells, int first, int last)
{
    Reflection out;
    for (int ordinal = first + 1; ordinal < last; ++ordinal) {
        const auto place = static_cast<std::size_t>(ordinal);
        out.value(0, names[place], cells[place]);
    }
    text += out.text();
}

} // namespace

void CellNames::fill(Names& table, std::string enumSource, std::mutex& mutex)
{
    const std::scoped_lock lock(mutex);
    if (!table.empty())
        return;
    forEachName(std::move(enumSource), [&](std::string name) { table.push_back(std::move(name)); });
    table.shrink_to_fit();
}

void CellNames::fill(Ordinals& table, std::string enumSource, std::mutex& mutex)
{
    const std::scoped_lock lock(mutex);
    if (!table.empty())
        return;
    unsigned int ordinal = 0;
    forEachName(std::move(enumSource), [&](std::string name) { table[std::move(name)] = ordinal++; });
}

auto CellNames::filled(void (*populate)(Names& table, std::string enumSource), std::string_view enumSource) -> Names
{
    Names table;
    populate(table, std::string(enumSource));
    return table;
}

auto CellNames::filled(void (*populate)(Ordinals& table, std::string enumSource), std::string_view enumSource)
    -> Ordinals
{
    Ordinals table;
    populate(table, std::string(enumSource));
    return table;
}

std::string CellNames::nameOf(const Names& names, unsigned int ordinal)
{
    return ordinal < names.size() ? names[ordinal] : "StringError";
}

unsigned int CellNames::ordinalOf(const Ordinals& ordinals, const std::string& name, unsigned int last)
{
    const auto found = ordinals.find(name);
    return found == ordinals.end() ? last : found->second;
}

void CellNames::list(Names& list, const Names& names, int first, int last)
{
    list.assign(names.begin() + first + 1, names.begin() + last);
}

void CellNames::reflect(std::string& text, const Names& names, std::span<const int> cells, int first, int last)
{
    reflectCells(text, names, cells, first, last);
}

void CellNames::reflect(std::string& text, const Names& names, std::span<const float> cells, int first, int last)
{
    reflectCells(text, names, cells, first, last);
}

void CellNames::reflect(std::string& text, const Names& names, std::span<const std::string> cells, int first, int last)
{
    reflectCells(text, names, cells, first, last);
}

} // namespace zelm

#pragma once

// The bodies of ZelmParamBlock, for the one source file that instantiates it for a block.

#include "framework/ZelmParamBlock.h"
#include "framework/ZelmReflection.h"

#include <algorithm>
#include <mutex>

namespace zelm::detail {

// Calls add for each name of an enum's source text but the last, which is no cell.
template <class Add>
void forEachCellName(std::string enumSource, Add add)
{
    std::erase(enumSource, ' ');
    std::string_view rest = enumSource;
    for (std::size_t comma = rest.find(','); comma != std::string_view::npos; comma = rest.find(',')) {
        add(std::string(rest.substr(0, comma)));
        rest.remove_prefix(comma + 1);
    }
}

// Each enum's tables are filled once, under the language's guard of local statics.
template <class Block>
std::vector<std::string> cellNames(std::string_view enumSource)
{
    std::vector<std::string> table;
    Block::populateE2S(table, std::string(enumSource));
    return table;
}

template <class Block>
std::unordered_map<std::string, unsigned int> cellOrdinals(std::string_view enumSource)
{
    std::unordered_map<std::string, unsigned int> table;
    Block::populateS2E(table, std::string(enumSource));
    return table;
}

template <class Enum>
std::string nameOf(const std::vector<std::string>& names, Enum cell)
{
    const auto ordinal = static_cast<unsigned int>(cell);
    return ordinal < names.size() ? names[ordinal] : "StringError";
}

template <class Enum>
Enum cellOf(const std::unordered_map<std::string, unsigned int>& ordinals, const std::string& name, Enum last)
{
    const auto found = ordinals.find(name);
    return found == ordinals.end() ? last : static_cast<Enum>(found->second);
}

template <class Enum, class Visit>
void forEachBetween(Enum first, Enum last, Visit visit)
{
    for (int ordinal = first + 1; ordinal < last; ++ordinal)
        visit(static_cast<Enum>(ordinal));
}

template <class Block, class Enum>
void listNames(std::vector<std::string>& names, Enum first, Enum last)
{
    names.clear();
    forEachBetween(first, last, [&](Enum cell) { names.push_back(Block::enum_to_string(cell)); });
}

} // namespace zelm::detail

template <class Cells>
std::string ZelmParamBlock<Cells>::className() const
{
    return std::string(Cells::name);
}

template <class Cells>
std::string ZelmParamBlock<Cells>::reflect() const
{
    zelm::Reflection out;
    const auto write = [&](auto first, auto last) {
        zelm::detail::forEachBetween(first, last,
                                     [&](auto cell) { out.value(0, enum_to_string(cell), (*this)[cell]); });
    };
    write(Cells::FirstUIInt, Cells::LastUIInt);
    write(Cells::FirstUIFloat, Cells::LastUIFloat);
    write(Cells::FirstUIString, Cells::LastUIString);
    write(Cells::FirstICInt, Cells::LastICInt);
    write(Cells::FirstICFloat, Cells::LastICFloat);
    write(Cells::FirstICString, Cells::LastICString);
    write(Cells::FirstMOInt, Cells::LastMOInt);
    write(Cells::FirstMOFloat, Cells::LastMOFloat);
    write(Cells::FirstMOString, Cells::LastMOString);
    return out.text();
}

template <class Cells>
void ZelmParamBlock<Cells>::reset()
{
    m_ints.fill(zelm::unsetInt);
    m_floats.fill(zelm::unsetFloat);
    for (std::string& text : m_strings)
        text = zelm::unsetString;
}

template <class Cells>
void ZelmParamBlock<Cells>::resetUserInputs()
{
    resetBetween(Cells::FirstUIInt, Cells::LastUIInt);
    resetBetween(Cells::FirstUIFloat, Cells::LastUIFloat);
    resetBetween(Cells::FirstUIString, Cells::LastUIString);
}

template <class Cells>
void ZelmParamBlock<Cells>::resetModelOutputs()
{
    resetBetween(Cells::FirstMOInt, Cells::LastMOInt);
    resetBetween(Cells::FirstMOFloat, Cells::LastMOFloat);
    resetBetween(Cells::FirstMOString, Cells::LastMOString);
}

template <class Cells>
void ZelmParamBlock<Cells>::resetIntermediateCalculations()
{
    resetBetween(Cells::FirstICInt, Cells::LastICInt);
    resetBetween(Cells::FirstICFloat, Cells::LastICFloat);
    resetBetween(Cells::FirstICString, Cells::LastICString);
}

template <class Cells>
void ZelmParamBlock<Cells>::resetBetween(IntEnum first, IntEnum last)
{
    std::fill(m_ints.begin() + first, m_ints.begin() + last, zelm::unsetInt);
}

template <class Cells>
void ZelmParamBlock<Cells>::resetBetween(FloatEnum first, FloatEnum last)
{
    std::fill(m_floats.begin() + first, m_floats.begin() + last, zelm::unsetFloat);
}

template <class Cells>
void ZelmParamBlock<Cells>::resetBetween(StringEnum first, StringEnum last)
{
    std::fill(m_strings.begin() + first, m_strings.begin() + last, zelm::unsetString);
}

template <class Cells>
void ZelmParamBlock<Cells>::populateE2S(std::vector<std::string>& table, std::string enumSource)
{
    static std::mutex mutex;
    const std::scoped_lock lock(mutex);
    if (!table.empty())
        return;
    zelm::detail::forEachCellName(std::move(enumSource), [&](std::string name) { table.push_back(std::move(name)); });
    table.shrink_to_fit();
}

template <class Cells>
void ZelmParamBlock<Cells>::populateS2E(std::unordered_map<std::string, unsigned int>& table, std::string enumSource)
{
    static std::mutex mutex;
    const std::scoped_lock lock(mutex);
    if (!table.empty())
        return;
    unsigned int ordinal = 0;
    zelm::detail::forEachCellName(std::move(enumSource), [&](std::string name) { table[std::move(name)] = ordinal++; });
}

template <class Cells>
std::string ZelmParamBlock<Cells>::enum_to_string(IntEnum cell)
{
    static const auto names = zelm::detail::cellNames<ZelmParamBlock>(Cells::intEnumSource);
    return zelm::detail::nameOf(names, cell);
}

template <class Cells>
std::string ZelmParamBlock<Cells>::enum_to_string(FloatEnum cell)
{
    static const auto names = zelm::detail::cellNames<ZelmParamBlock>(Cells::floatEnumSource);
    return zelm::detail::nameOf(names, cell);
}

template <class Cells>
std::string ZelmParamBlock<Cells>::enum_to_string(StringEnum cell)
{
    static const auto names = zelm::detail::cellNames<ZelmParamBlock>(Cells::stringEnumSource);
    return zelm::detail::nameOf(names, cell);
}

template <class Cells>
auto ZelmParamBlock<Cells>::string_to_int_enum(const std::string& name) -> IntEnum
{
    static const auto ordinals = zelm::detail::cellOrdinals<ZelmParamBlock>(Cells::intEnumSource);
    return zelm::detail::cellOf(ordinals, name, Cells::LastInt);
}

template <class Cells>
auto ZelmParamBlock<Cells>::string_to_float_enum(const std::string& name) -> FloatEnum
{
    static const auto ordinals = zelm::detail::cellOrdinals<ZelmParamBlock>(Cells::floatEnumSource);
    return zelm::detail::cellOf(ordinals, name, Cells::LastFloat);
}

template <class Cells>
auto ZelmParamBlock<Cells>::string_to_string_enum(const std::string& name) -> StringEnum
{
    static const auto ordinals = zelm::detail::cellOrdinals<ZelmParamBlock>(Cells::stringEnumSource);
    return zelm::detail::cellOf(ordinals, name, Cells::LastString);
}

template <class Cells>
unsigned int ZelmParamBlock<Cells>::string_to_enum(const std::string& name)
{
    const IntEnum intCell = string_to_int_enum(name);
    if (intCell < Cells::LastInt)
        return static_cast<unsigned int>(intCell);
    const FloatEnum floatCell = string_to_float_enum(name);
    if (floatCell < Cells::LastFloat)
        return static_cast<unsigned int>(floatCell);
    const StringEnum stringCell = string_to_string_enum(name);
    if (stringCell < Cells::LastString)
        return static_cast<unsigned int>(stringCell);
    return 0xffffffffu;
}

template <class Cells>
void ZelmParamBlock<Cells>::getIntUserInputNames(std::vector<std::string>& names)
{
    zelm::detail::listNames<ZelmParamBlock>(names, Cells::FirstUIInt, Cells::LastUIInt);
}

template <class Cells>
void ZelmParamBlock<Cells>::getIntModelOutputNames(std::vector<std::string>& names)
{
    zelm::detail::listNames<ZelmParamBlock>(names, Cells::FirstMOInt, Cells::LastMOInt);
}

template <class Cells>
void ZelmParamBlock<Cells>::getIntIntermediateCalculationNames(std::vector<std::string>& names)
{
    zelm::detail::listNames<ZelmParamBlock>(names, Cells::FirstICInt, Cells::LastICInt);
}

template <class Cells>
void ZelmParamBlock<Cells>::getFloatUserInputNames(std::vector<std::string>& names)
{
    zelm::detail::listNames<ZelmParamBlock>(names, Cells::FirstUIFloat, Cells::LastUIFloat);
}

template <class Cells>
void ZelmParamBlock<Cells>::getFloatModelOutputNames(std::vector<std::string>& names)
{
    zelm::detail::listNames<ZelmParamBlock>(names, Cells::FirstMOFloat, Cells::LastMOFloat);
}

template <class Cells>
void ZelmParamBlock<Cells>::getFloatIntermediateCalculationNames(std::vector<std::string>& names)
{
    zelm::detail::listNames<ZelmParamBlock>(names, Cells::FirstICFloat, Cells::LastICFloat);
}

template <class Cells>
void ZelmParamBlock<Cells>::getStringUserInputNames(std::vector<std::string>& names)
{
    zelm::detail::listNames<ZelmParamBlock>(names, Cells::FirstUIString, Cells::LastUIString);
}

template <class Cells>
void ZelmParamBlock<Cells>::getStringModelOutputNames(std::vector<std::string>& names)
{
    zelm::detail::listNames<ZelmParamBlock>(names, Cells::FirstMOString, Cells::LastMOString);
}

template <class Cells>
void ZelmParamBlock<Cells>::getStringIntermediateCalculationNames(std::vector<std::string>& names)
{
    zelm::detail::listNames<ZelmParamBlock>(names, Cells::FirstICString, Cells::LastICString);
}

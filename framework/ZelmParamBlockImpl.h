#pragma once

// The bodies of ZelmParamBlock, for the one source file that instantiates it for a block. What doesn't depend on the
// block stands in ZelmCellNames.cpp.

#include "framework/ZelmCellNames.h"
#include "framework/ZelmParamBlock.h"

#include <algorithm>
#include <mutex>

namespace zelm {

/// Apart, so that looking at texts that are unset, as most are, takes a few instructions.
[[gnu::noinline]] inline void unset(std::string& text)
{
    text = unsetString;
}

} // namespace zelm

template <class Cells>
std::string ZelmParamBlock<Cells>::className() const
{
    return std::string(Cells::name);
}

template <class Cells>
std::string ZelmParamBlock<Cells>::reflect() const
{
    const auto& ints = namesOf(Cells::LastInt);
    const auto& floats = namesOf(Cells::LastFloat);
    const auto& strings = namesOf(Cells::LastString);
    std::string text;
    zelm::CellNames::reflect(text, ints, m_ints, Cells::FirstUIInt, Cells::LastUIInt);
    zelm::CellNames::reflect(text, floats, m_floats, Cells::FirstUIFloat, Cells::LastUIFloat);
    zelm::CellNames::reflect(text, strings, m_strings, Cells::FirstUIString, Cells::LastUIString);
    zelm::CellNames::reflect(text, ints, m_ints, Cells::FirstICInt, Cells::LastICInt);
    zelm::CellNames::reflect(text, floats, m_floats, Cells::FirstICFloat, Cells::LastICFloat);
    zelm::CellNames::reflect(text, strings, m_strings, Cells::FirstICString, Cells::LastICString);
    zelm::CellNames::reflect(text, ints, m_ints, Cells::FirstMOInt, Cells::LastMOInt);
    zelm::CellNames::reflect(text, floats, m_floats, Cells::FirstMOFloat, Cells::LastMOFloat);
    zelm::CellNames::reflect(text, strings, m_strings, Cells::FirstMOString, Cells::LastMOString);
    return text;
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
[[gnu::always_inline]] inline void ZelmParamBlock<Cells>::resetBetween(StringEnum first, StringEnum last)
{
    // Mostly they are: a look costs less than an assignment.
    for (auto cell = m_strings.begin() + first; cell != m_strings.begin() + last; ++cell) {
        if (!zelm::isUnset(*cell))
            zelm::unset(*cell);
    }
}

template <class Cells>
void ZelmParamBlock<Cells>::populateE2S(std::vector<std::string>& table, std::string enumSource)
{
    static std::mutex mutex;
    zelm::CellNames::fill(table, std::move(enumSource), mutex);
}

template <class Cells>
void ZelmParamBlock<Cells>::populateS2E(std::unordered_map<std::string, unsigned int>& table, std::string enumSource)
{
    static std::mutex mutex;
    zelm::CellNames::fill(table, std::move(enumSource), mutex);
}

template <class Cells>
const std::vector<std::string>& ZelmParamBlock<Cells>::namesOf(IntEnum)
{
    static const auto names = zelm::CellNames::filled(populateE2S, Cells::intEnumSource);
    return names;
}

template <class Cells>
const std::vector<std::string>& ZelmParamBlock<Cells>::namesOf(FloatEnum)
{
    static const auto names = zelm::CellNames::filled(populateE2S, Cells::floatEnumSource);
    return names;
}

template <class Cells>
const std::vector<std::string>& ZelmParamBlock<Cells>::namesOf(StringEnum)
{
    static const auto names = zelm::CellNames::filled(populateE2S, Cells::stringEnumSource);
    return names;
}

template <class Cells>
std::string ZelmParamBlock<Cells>::enum_to_string(IntEnum cell)
{
    return zelm::CellNames::nameOf(namesOf(cell), static_cast<unsigned int>(cell));
}

template <class Cells>
std::string ZelmParamBlock<Cells>::enum_to_string(FloatEnum cell)
{
    return zelm::CellNames::nameOf(namesOf(cell), static_cast<unsigned int>(cell));
}

template <class Cells>
std::string ZelmParamBlock<Cells>::enum_to_string(StringEnum cell)
{
    return zelm::CellNames::nameOf(namesOf(cell), static_cast<unsigned int>(cell));
}

template <class Cells>
auto ZelmParamBlock<Cells>::string_to_int_enum(const std::string& name) -> IntEnum
{
    static const auto ordinals = zelm::CellNames::filled(populateS2E, Cells::intEnumSource);
    return static_cast<IntEnum>(zelm::CellNames::ordinalOf(ordinals, name, Cells::LastInt));
}

template <class Cells>
auto ZelmParamBlock<Cells>::string_to_float_enum(const std::string& name) -> FloatEnum
{
    static const auto ordinals = zelm::CellNames::filled(populateS2E, Cells::floatEnumSource);
    return static_cast<FloatEnum>(zelm::CellNames::ordinalOf(ordinals, name, Cells::LastFloat));
}

template <class Cells>
auto ZelmParamBlock<Cells>::string_to_string_enum(const std::string& name) -> StringEnum
{
    static const auto ordinals = zelm::CellNames::filled(populateS2E, Cells::stringEnumSource);
    return static_cast<StringEnum>(zelm::CellNames::ordinalOf(ordinals, name, Cells::LastString));
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
    zelm::CellNames::list(names, namesOf(Cells::LastInt), Cells::FirstUIInt, Cells::LastUIInt);
}

template <class Cells>
void ZelmParamBlock<Cells>::getIntModelOutputNames(std::vector<std::string>& names)
{
    zelm::CellNames::list(names, namesOf(Cells::LastInt), Cells::FirstMOInt, Cells::LastMOInt);
}

template <class Cells>
void ZelmParamBlock<Cells>::getIntIntermediateCalculationNames(std::vector<std::string>& names)
{
    zelm::CellNames::list(names, namesOf(Cells::LastInt), Cells::FirstICInt, Cells::LastICInt);
}

template <class Cells>
void ZelmParamBlock<Cells>::getFloatUserInputNames(std::vector<std::string>& names)
{
    zelm::CellNames::list(names, namesOf(Cells::LastFloat), Cells::FirstUIFloat, Cells::LastUIFloat);
}

template <class Cells>
void ZelmParamBlock<Cells>::getFloatModelOutputNames(std::vector<std::string>& names)
{
    zelm::CellNames::list(names, namesOf(Cells::LastFloat), Cells::FirstMOFloat, Cells::LastMOFloat);
}

template <class Cells>
void ZelmParamBlock<Cells>::getFloatIntermediateCalculationNames(std::vector<std::string>& names)
{
    zelm::CellNames::list(names, namesOf(Cells::LastFloat), Cells::FirstICFloat, Cells::LastICFloat);
}

template <class Cells>
void ZelmParamBlock<Cells>::getStringUserInputNames(std::vector<std::string>& names)
{
    zelm::CellNames::list(names, namesOf(Cells::LastString), Cells::FirstUIString, Cells::LastUIString);
}

template <class Cells>
void ZelmParamBlock<Cells>::getStringModelOutputNames(std::vector<std::string>& names)
{
    zelm::CellNames::list(names, namesOf(Cells::LastString), Cells::FirstMOString, Cells::LastMOString);
}

template <class Cells>
void ZelmParamBlock<Cells>::getStringIntermediateCalculationNames(std::vector<std::string>& names)
{
    zelm::CellNames::list(names, namesOf(Cells::LastString), Cells::FirstICString, Cells::LastICString);
}

#pragma once

#include "framework/ZelmExport.h"
#include "framework/ZelmInfo.h"
#include "framework/ZelmParams.h"
#include "framework/ZelmUnset.h"

#include <array>
#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

/// A parameter block: three arrays of cells, addressed by the enums of Cells. Copyable; used by one thread at a time.
/// An index at or beyond Last<T>, of any origin, raises std::out_of_range.
template <class Cells>
class ZELM_EXPORT ZelmParamBlock : public ZelmParams, public Cells {
public:
    using typename Cells::FloatEnum;
    using typename Cells::IntEnum;
    using typename Cells::StringEnum;

    ZelmParamBlock()
    {
        reset();
    }

    std::string className() const override;
    std::string reflect() const override;

    int& operator[](const IntEnum& cell)
    {
        return m_ints.at(static_cast<std::size_t>(cell));
    }
    float& operator[](const FloatEnum& cell)
    {
        return m_floats.at(static_cast<std::size_t>(cell));
    }
    std::string& operator[](const StringEnum& cell)
    {
        return m_strings.at(static_cast<std::size_t>(cell));
    }
    int operator[](const IntEnum& cell) const
    {
        return m_ints.at(static_cast<std::size_t>(cell));
    }
    float operator[](const FloatEnum& cell) const
    {
        return m_floats.at(static_cast<std::size_t>(cell));
    }
    std::string operator[](const StringEnum& cell) const
    {
        return m_strings.at(static_cast<std::size_t>(cell));
    }

    /// All cells to their sentinels; below, the cells of one kind.
    void reset();
    void resetUserInputs();
    void resetModelOutputs();
    void resetIntermediateCalculations();

    /// Fills an empty table with the names in enumSource, all but the last; leaves a filled one alone. Locked.
    static void populateE2S(std::vector<std::string>& table, std::string enumSource);
    static void populateS2E(std::unordered_map<std::string, unsigned int>& table, std::string enumSource);

    /// The enumerator's name, markers included; "StringError" for Last<T> and above.
    static std::string enum_to_string(IntEnum cell);
    static std::string enum_to_string(FloatEnum cell);
    static std::string enum_to_string(StringEnum cell);

    /// The enumerator of exactly that name; Last<T> if there is none.
    static IntEnum string_to_int_enum(const std::string& name);
    static FloatEnum string_to_float_enum(const std::string& name);
    static StringEnum string_to_string_enum(const std::string& name);
    /// The ordinal in whichever enum knows the name, ints first, then floats, then strings; 0xffffffff if none does.
    static unsigned int string_to_enum(const std::string& name);

    /// Replaces names by those of one kind and type, in enum order, without markers.
    static void getIntUserInputNames(std::vector<std::string>& names);
    static void getIntModelOutputNames(std::vector<std::string>& names);
    static void getIntIntermediateCalculationNames(std::vector<std::string>& names);
    static void getFloatUserInputNames(std::vector<std::string>& names);
    static void getFloatModelOutputNames(std::vector<std::string>& names);
    static void getFloatIntermediateCalculationNames(std::vector<std::string>& names);
    static void getStringUserInputNames(std::vector<std::string>& names);
    static void getStringModelOutputNames(std::vector<std::string>& names);
    static void getStringIntermediateCalculationNames(std::vector<std::string>& names);

private:
    /// The names of all cells of that enum, read when they are first asked for.
    static const std::vector<std::string>& namesOf(IntEnum);
    static const std::vector<std::string>& namesOf(FloatEnum);
    static const std::vector<std::string>& namesOf(StringEnum);

    void resetBetween(IntEnum first, IntEnum last);
    void resetBetween(FloatEnum first, FloatEnum last);
    void resetBetween(StringEnum first, StringEnum last);

    std::array<int, Cells::LastInt> m_ints;
    std::array<float, Cells::LastFloat> m_floats;
    std::array<std::string, Cells::LastString> m_strings;
};

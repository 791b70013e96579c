#pragma once

#include <cstdint>
#include <limits>
#include <string_view>

namespace zelm {

/// What a cell without a value holds, and what a failed table look-up of the type returns. Tested by exact equality.
inline constexpr int unsetInt = std::numeric_limits<int>::max();
inline constexpr float unsetFloat = std::numeric_limits<float>::max();
inline constexpr std::string_view unsetString = "UninitializedString";

/// The int helpers' own error value (s2i, SUM, UNIQUE, ToString): one less than an unset cell, and kept apart from it.
inline constexpr int notANumberInt = 0x7ffffffe;

constexpr bool isUnset(int value)
{
    return value == unsetInt;
}

constexpr bool isUnset(float value)
{
    // As the bits, of which the number has but these: compilers make one jump of it instead of two.
    return __builtin_bit_cast(std::uint32_t, value) == __builtin_bit_cast(std::uint32_t, unsetFloat);
}

constexpr bool isUnset(std::string_view value)
{
    return value == unsetString;
}

} // namespace zelm

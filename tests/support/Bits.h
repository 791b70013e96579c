#pragma once

#include <gmock/gmock.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <string>

namespace zelm::test {

/// A float as people and bits read it: "0.125 (0x1p-3, 3e000000)".
inline std::string show(float value)
{
    char text[96];
    std::snprintf(text, sizeof text, "%.9g (%a, %08x)", static_cast<double>(value), static_cast<double>(value),
                  std::bit_cast<std::uint32_t>(value));
    return text;
}

inline bool sameBits(float a, float b)
{
    return std::bit_cast<std::uint32_t>(a) == std::bit_cast<std::uint32_t>(b) || (std::isnan(a) && std::isnan(b));
}

/// EXPECT_THAT(actual, IsBits(expected)): the same float to the last bit, +0 and -0 apart, any NaN like any other.
MATCHER_P(IsBits, expected, "is " + show(expected))
{
    *result_listener << "which is " << show(arg);
    return sameBits(arg, expected);
}

} // namespace zelm::test

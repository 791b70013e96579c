#pragma once

#include <gmock/gmock.h>

#include <string>

namespace zelm::test {

/// A float as people and bits read it: "0.125 (0x1p-3, 3e000000)".
std::string show(float value);

bool sameBits(float a, float b);

/// EXPECT_THAT(actual, IsBits(expected)): the same float to the last bit, +0 and -0 apart, any NaN like any other.
testing::Matcher<float> IsBits(float expected);

} // namespace zelm::test

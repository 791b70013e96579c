#pragma once

#include <cfloat>
#include <cmath>
#include <limits>

// The cells' last bit depends on every step being rounded to its own type.
static_assert(FLT_EVAL_METHOD == 0, "formulas need float arithmetic without excess precision");
static_assert(std::numeric_limits<float>::is_iec559 && std::numeric_limits<double>::is_iec559);

namespace zelm {

/// Int sums, differences and products of the formulas wrap in 32 bits.
constexpr int wrapAdd(int a, int b)
{
    return static_cast<int>(static_cast<unsigned>(a) + static_cast<unsigned>(b));
}

constexpr int wrapSubtract(int a, int b)
{
    return static_cast<int>(static_cast<unsigned>(a) - static_cast<unsigned>(b));
}

constexpr int wrapMultiply(int a, int b)
{
    return static_cast<int>(static_cast<unsigned>(a) * static_cast<unsigned>(b));
}

/// The plain integer quotient, 0 for a divisor of exactly 0; the lowest int by -1 wraps.
constexpr int quotientOrZero(int a, int b)
{
    if (b == 0)
        return 0;
    return b == -1 ? wrapSubtract(0, a) : a / b;
}

/// The integer remainder, 0 for a divisor of 0 or -1, where the machine's division would trap.
constexpr int remainderOrZero(int a, int b)
{
    return b == 0 || b == -1 ? 0 : a % b;
}

/// Cuts the fraction off; what doesn't fit an int, or is not a number, gives the lowest int. A float widens exactly.
constexpr int truncate(double value)
{
    constexpr double lowest = std::numeric_limits<int>::min();
    return value > lowest - 1.0 && value < -lowest ? static_cast<int>(value) : std::numeric_limits<int>::min();
}

/// a / b in single precision, 0 where the divisor is exactly 0.
constexpr float ratioOrZero(float a, float b)
{
    return b == 0.0f ? 0.0f : a / b;
}

/// How power grows with the supply in the blocks that follow the power law: the ratio to the characterisation voltage,
/// 0 where that is 0, to the power 2.3 in double precision.
inline double voltageFactor(float volts, float characterisedVolts)
{
    return std::pow(static_cast<double>(ratioOrZero(volts, characterisedVolts)), 2.3);
}

} // namespace zelm

#include "support/Bits.h"

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <ostream>

namespace zelm::test {

namespace {

class SameBits : public testing::MatcherInterface<float> {
public:
    explicit SameBits(float expected) : m_expected(expected) {}

    bool MatchAndExplain(float actual, testing::MatchResultListener* listener) const override
    {
        *listener << "which is " << show(actual);
        return sameBits(actual, m_expected);
    }

    void DescribeTo(std::ostream* out) const override
    {
        *out << "is " << show(m_expected);
    }

private:
    float m_expected;
};

} // namespace

std::string show(float value)
{
    char text[96];
    std::snprintf(text, sizeof text, "%.9g (%a, %08x)", static_cast<double>(value), static_cast<double>(value),
                  std::bit_cast<std::uint32_t>(value));
    return text;
}

bool sameBits(float a, float b)
{
    return std::bit_cast<std::uint32_t>(a) == std::bit_cast<std::uint32_t>(b) || (std::isnan(a) && std::isnan(b));
}

testing::Matcher<float> IsBits(float expected)
{
    return testing::MakeMatcher(new SameBits(expected));
}

} // namespace zelm::test

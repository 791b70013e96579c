#include "host/base/Numerals.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>

namespace zelm::host {

#ifdef __cpp_lib_to_chars

std::string shortestText(float value)
{
    std::array<char, 64> text{};
    const auto end = std::to_chars(text.data(), text.data() + text.size(), value);
    return {text.data(), end.ptr};
}

#else

namespace {

template <class Real>
std::optional<Real> parsed(std::string_view text, Real (*read)(const char*, char**))
{
    const std::size_t sign = text.starts_with('-') ? 1 : 0;
    const char first = sign < text.size() ? text[sign] : ' ';
    const bool hexadecimal = first == '0' && sign + 1 < text.size() && (text[sign + 1] | 0x20) == 'x';
    if (first == ' ' || first == '+' || first == '-' || (first >= '\t' && first <= '\r') || hexadecimal)
        return std::nullopt;
    const std::string ended(text);
    char* end = nullptr;
    const Real value = read(ended.c_str(), &end);
    if (end != ended.c_str() + ended.size())
        return std::nullopt;
    const std::string_view digits = text.substr(sign, text.find_first_of("eE") - sign);
    const bool tooLarge = std::isinf(value) && first != 'i' && first != 'I';
    const bool tooSmall = value == 0 && digits.find_first_of("123456789") != std::string_view::npos;
    return tooLarge || tooSmall ? std::nullopt : std::optional(value);
}

} // namespace

std::optional<double> fromChars(std::string_view text, double)
{
    return parsed<double>(text, std::strtod);
}

std::optional<float> fromChars(std::string_view text, float)
{
    return parsed<float>(text, std::strtof);
}

// The digits are fmt's; of the fixed and the scientific form the shorter one, as std::to_chars has it.
std::string shortestText(float value)
{
    const std::string written = fmt::format("{}", value);
    if (!std::isfinite(value) || value == 0.0f)
        return written;
    const std::string sign = value < 0.0f ? "-" : "";
    const std::size_t e = std::min(written.find('e'), written.size());
    std::string digits;
    std::size_t point = std::string::npos; // of the digits, how many stand before it
    for (const char c : written.substr(sign.size(), e - sign.size())) {
        if (c == '.')
            point = digits.size();
        else
            digits += c;
    }
    const int before = static_cast<int>(std::min(point, digits.size()));
    const auto zeros = static_cast<int>(digits.find_first_not_of('0'));
    const int exponent = before - zeros - 1 + (e < written.size() ? std::atoi(written.c_str() + e + 1) : 0);
    digits = digits.substr(static_cast<std::size_t>(zeros),
                           digits.find_last_not_of('0') + 1 - static_cast<std::size_t>(zeros));
    const int decimals = std::max(static_cast<int>(digits.size()) - 1 - exponent, 0);
    const std::string fixed = fmt::format("{:.{}f}", std::fabs(value), decimals);
    const std::string scientific = fmt::format("{}{}{}e{}{:02}", digits.substr(0, 1), digits.size() > 1 ? "." : "",
                                               digits.substr(1), exponent < 0 ? '-' : '+', std::abs(exponent));
    return sign + (fixed.size() <= scientific.size() ? fixed : scientific);
}

#endif

} // namespace zelm::host

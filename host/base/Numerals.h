#pragma once

#include <charconv>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

namespace zelm::host {

/// The shortest text that reads back as the same number: 0.72, 1e+05.
std::string shortestText(float value);

#ifndef __cpp_lib_to_chars
/// As std::from_chars reads a number that is all of a text; only for standard libraries that lack it.
std::optional<double> fromChars(std::string_view text, double);
std::optional<float> fromChars(std::string_view text, float);
#endif

/// A number that is all of a text, without spaces or a plus before it. Nothing if it is none, or too large or small.
template <class Real>
std::optional<Real> realIn(std::string_view text)
{
#ifdef __cpp_lib_to_chars
    Real value{};
    const char* const end = text.data() + text.size();
    const auto parsed = std::from_chars(text.data(), end, value);
    return parsed.ec == std::errc() && parsed.ptr == end ? std::optional(value) : std::nullopt;
#else
    return fromChars(text, Real{});
#endif
}

} // namespace zelm::host

#include "host/report/HtmlNumbers.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace zelm::host {

namespace {

constexpr std::array<std::pair<double, const char*>, 5> kPrefixes{
    {{1.0, ""}, {1e-3, "m"}, {1e-6, "µ"}, {1e-9, "n"}, {1e-12, "p"}}};

const std::pair<double, const char*>& prefixOf(double size)
{
    const auto* const found = std::find_if(kPrefixes.begin(), kPrefixes.end(),
                                           [&](const auto& prefix) { return size == 0.0 || size >= prefix.first; });
    return found == kPrefixes.end() ? kPrefixes.back() : *found;
}

std::string withMinus(std::string text)
{
    if (text.starts_with('-'))
        text.replace(0, 1, "−");
    return text;
}

} // namespace

std::string htmlFixed(double value, int decimals)
{
    return std::isnan(value) ? "none" : withMinus(fmt::format("{:.{}f}", value, decimals));
}

std::string htmlAmount(double value, std::string_view unit)
{
    constexpr double hundred = 99.995; // from here on four digits leave one decimal
    constexpr double ten = 9.9995;
    if (std::isnan(value))
        return "no value";
    const auto& [factor, sign] = prefixOf(std::abs(value));
    const double scaled = value / factor;
    const double size = std::abs(scaled);
    return fmt::format("{} {}{}", htmlFixed(scaled, size >= hundred ? 1 : size >= ten ? 2 : 3), sign, unit);
}

std::string htmlDegrees(double value)
{
    return std::isnan(value) ? "none" : htmlFixed(value, 2) + " °C";
}

std::string htmlShare(double part, double all)
{
    constexpr double percent = 100.0;
    return all > 0.0 && !std::isnan(part) ? htmlFixed(percent * part / all, 1) + " %" : "";
}

std::string htmlShareBar(double part, double all)
{
    constexpr double percent = 100.0;
    const double share = all > 0.0 ? std::clamp(part / all, 0.0, 1.0) : part > 0.0 ? 1.0 : 0.0;
    return fmt::format(R"(<span class="bar" aria-hidden="true"><i{} style="width:{:.2f}%"></i></span>)",
                       part > all ? R"( class="over")" : "", std::isnan(share) ? 0.0 : percent * share);
}

std::string htmlCount(double count)
{
    std::string text = fmt::format("{:.15g}", count);
    constexpr int apart = 3;
    if (text.find_first_not_of("0123456789") == std::string::npos) {
        for (int at = static_cast<int>(text.size()) - apart; at > 0; at -= apart)
            text.insert(static_cast<std::size_t>(at), "\u202f");
    }
    return text;
}

HtmlScale::HtmlScale(const std::vector<double>& values, std::string_view unit)
{
    double size = 0.0;
    for (const double value : values)
        size = std::max(size, std::isnan(value) ? 0.0 : std::abs(value));
    const auto& [factor, sign] = prefixOf(size);
    m_factor = factor;
    m_unit = fmt::format("{}{}", sign, unit);
    constexpr int digits = 4;
    if (size > 0.0)
        m_decimals = std::clamp(digits - static_cast<int>(std::floor(std::log10(size / factor))), 1, digits);
}

std::string HtmlScale::text(double value) const
{
    constexpr double ten = 10.0;
    if (std::isnan(value))
        return {};
    const double least = std::pow(ten, -m_decimals);
    const double scaled = value / m_factor;
    return scaled != 0.0 && std::abs(scaled) < least / 2.0 ? fmt::format("&lt; {:.{}f}", least, m_decimals)
                                                           : htmlFixed(scaled, m_decimals);
}

} // namespace zelm::host

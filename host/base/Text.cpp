#include "host/base/Text.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <cmath>
#include <numeric>

namespace zelm::host {

namespace {

// Levenshtein's distance, blind to case.
std::size_t editDistance(std::string_view a, std::string_view b)
{
    std::vector<std::size_t> row(b.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 1; i <= a.size(); ++i) {
        std::size_t diagonal = row[0];
        row[0] = i;
        for (std::size_t j = 1; j <= b.size(); ++j) {
            const bool same = std::toupper(static_cast<unsigned char>(a[i - 1])) ==
                              std::toupper(static_cast<unsigned char>(b[j - 1]));
            const std::size_t replaced = diagonal + (same ? 0 : 1);
            diagonal = row[j];
            row[j] = std::min({row[j] + 1, row[j - 1] + 1, replaced});
        }
    }
    return row[b.size()];
}

// Display columns of UTF-8 text: every byte that neither continues a character nor is part of a colour's sequence.
std::size_t width(std::string_view text)
{
    std::size_t columns = 0;
    bool escape = false;
    for (const char c : text) {
        escape = escape || c == '\x1b';
        columns += !escape && (static_cast<unsigned char>(c) & 0xc0) != 0x80;
        escape = escape && c != 'm';
    }
    return columns;
}

bool looksNumeric(std::string_view text)
{
    return !text.empty() && (std::isdigit(static_cast<unsigned char>(text[0])) || text[0] == '-' || text == "inf");
}

} // namespace

std::vector<std::string> nearestNames(std::string_view name, const std::vector<std::string>& known)
{
    constexpr std::size_t atMost = 3;
    std::vector<std::pair<std::size_t, std::string>> ranked;
    const std::size_t limit = std::max<std::size_t>(2, name.size() / 3);
    for (const std::string& candidate : known) {
        const std::size_t distance = editDistance(name, candidate);
        if (distance <= limit)
            ranked.emplace_back(distance, candidate);
    }
    std::sort(ranked.begin(), ranked.end());
    if (ranked.size() > atMost)
        ranked.resize(atMost);
    std::vector<std::string> names;
    for (auto& [distance, candidate] : ranked)
        names.push_back(std::move(candidate));
    return names;
}

std::string orList(const std::vector<std::string>& words)
{
    std::string text;
    for (std::size_t i = 0; i < words.size(); ++i)
        text += (i == 0 ? "" : i + 1 == words.size() ? " or " : ", ") + words[i];
    return text;
}

std::string suggestion(std::string_view name, const std::vector<std::string>& known)
{
    const std::vector<std::string> names = nearestNames(name, known);
    return names.empty() ? std::string() : "; did you mean " + orList(names) + "?";
}

std::string upper(std::string text)
{
    for (char& c : text)
        c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return text;
}

std::string lower(std::string text)
{
    for (char& c : text)
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return text;
}

std::vector<std::string> split(const std::string& text, char separator)
{
    std::vector<std::string> parts(1);
    for (const char c : text) {
        if (c == separator)
            parts.emplace_back();
        else
            parts.back() += c;
    }
    return parts;
}

std::string si(double value, std::string_view unit)
{
    if (std::isnan(value))
        return "none";
    if (std::isinf(value))
        return fmt::format("{} {}", value, unit);
    struct Prefix {
        double factor;
        const char* sign;
    };
    static constexpr std::array<Prefix, 5> prefixes{{{1.0, ""}, {1e-3, "m"}, {1e-6, "u"}, {1e-9, "n"}, {1e-12, "p"}}};
    // Four digits; what rounds up to 1000 takes the next prefix.
    constexpr double roundsUp = 0.99995;
    const double magnitude = std::fabs(value);
    Prefix chosen = prefixes.front();
    for (const Prefix& prefix : prefixes) {
        chosen = prefix;
        if (magnitude >= roundsUp * prefix.factor || magnitude == 0.0)
            break;
    }
    const double scaled = value / chosen.factor;
    const double size = std::fabs(scaled);
    const int decimals = size >= 99.995 ? 1 : size >= 9.9995 ? 2 : 3;
    return fmt::format("{:.{}f} {}{}", scaled, decimals, chosen.sign, unit);
}

std::string exactText(float value)
{
    std::array<char, 64> text{};
    const auto end = std::to_chars(text.data(), text.data() + text.size(), value);
    return {text.data(), end.ptr};
}

std::string escapedCsv(const std::string& text)
{
    if (text.find_first_of(",\"\r\n") == std::string::npos)
        return text;
    std::string quoted = "\"";
    for (const char c : text)
        quoted += c == '"' ? "\"\"" : std::string(1, c);
    return quoted + '"';
}

TextTable::TextTable(std::vector<std::string> header) : m_rows{std::move(header)}
{
    rule();
}

void TextTable::row(std::vector<std::string> cells)
{
    m_rows.push_back(std::move(cells));
}

void TextTable::rule()
{
    m_rows.emplace_back();
}

std::string TextTable::text() const
{
    const std::size_t columns = m_rows.front().size();
    std::vector<std::size_t> widths(columns, 0);
    std::vector<bool> numeric(columns, false);
    for (const auto& cells : m_rows) {
        for (std::size_t c = 0; c < cells.size(); ++c) {
            widths[c] = std::max(widths[c], width(cells[c]));
            numeric[c] = numeric[c] || looksNumeric(cells[c]);
        }
    }
    std::string text;
    for (const auto& cells : m_rows) {
        std::string line;
        for (std::size_t c = 0; c < columns; ++c) {
            if (cells.empty()) {
                line += std::string(widths[c], '-') + "  ";
                continue;
            }
            const std::string& cell = c < cells.size() ? cells[c] : std::string();
            const std::string padding(widths[c] - width(cell), ' ');
            line += (numeric[c] && c > 0 ? padding + cell : cell + padding) + "  ";
        }
        line.erase(line.find_last_not_of(' ') + 1);
        text += line + '\n';
    }
    return text;
}

} // namespace zelm::host

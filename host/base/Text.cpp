#include "host/base/Text.h"

#include "host/base/Numerals.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <clocale>
#include <cmath>
#include <cstdint>
#include <cuchar>
#include <cwchar>
#include <locale.h> // NOLINT(modernize-deprecated-headers): newlocale and uselocale are POSIX's
#include <numeric>
#include <utility>

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

// While it lives, the thread's characters are UTF-8, whatever the environment says.
class Utf8Scope {
public:
    Utf8Scope() : m_before(uselocale(utf8())) {}
    ~Utf8Scope()
    {
        uselocale(m_before);
    }
    Utf8Scope(const Utf8Scope&) = delete;
    Utf8Scope& operator=(const Utf8Scope&) = delete;

private:
    static locale_t utf8()
    {
        static const locale_t locale = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
        return locale; // null, which changes nothing, where the C library has none
    }

    locale_t m_before;
};

// One character of UTF-8 text, or a byte that is no part of any.
struct Character {
    std::string_view bytes;
    char32_t code = 0;
    bool valid = false;
};

template <class Each>
void forEachCharacter(std::string_view text, Each each)
{
    const Utf8Scope scope;
    while (!text.empty()) {
        Character character{text.substr(0, 1)};
        if (static_cast<unsigned char>(text.front()) < 0x80) {
            character.code = static_cast<unsigned char>(text.front());
            character.valid = true;
        } else {
            std::mbstate_t state{};
            const std::size_t size = std::mbrtoc32(&character.code, text.data(), text.size(), &state);
            character.valid = size <= text.size(); // errors are larger than any text
            if (character.valid)
                character.bytes = text.substr(0, size);
        }
        each(character);
        text.remove_prefix(character.bytes.size());
    }
}

bool misleads(char32_t code)
{
    const auto within = [code](char32_t first, char32_t last) { return code >= first && code <= last; };
    return code < 0x20 || within(0x7f, 0x9f) || code == 0x61c || within(0x200e, 0x200f) || within(0x2028, 0x202e) ||
           within(0x2066, 0x2069) || code == 0xfeff;
}

// The first columns of a cell, cut at a space if there is one; the rest stays.
std::string cutLine(std::string& rest, std::size_t columns)
{
    std::size_t taken = 0;
    std::size_t used = 0;
    std::size_t space = 0;
    bool full = false;
    forEachCharacter(rest, [&](const Character& character) {
        const std::size_t wide = width(character.bytes);
        full = full || (used + wide > columns && taken > 0);
        if (full)
            return;
        used += wide;
        taken += character.bytes.size();
        if (character.code == U' ')
            space = taken;
    });
    if (taken < rest.size() && rest[taken] == ' ')
        space = taken;
    const std::size_t cut = taken == rest.size() || space == 0 ? taken : space;
    std::string line = rest.substr(0, cut);
    rest.erase(0, cut);
    line.erase(line.find_last_not_of(' ') + 1);
    rest.erase(0, rest.find_first_not_of(' '));
    return line;
}

std::size_t g_tableWidth = 0; // NOLINT(cppcoreguidelines-avoid-non-const-global-variables): set once, at the start

// Takes columns from the widest column of words, one by one, until the table fits or the words have no room left.
void narrow(std::vector<std::size_t>& widths, const std::vector<bool>& breaks)
{
    constexpr std::size_t gap = 2;
    constexpr std::size_t leastWords = 12;
    std::size_t total = gap * (widths.size() - 1) + std::accumulate(widths.begin(), widths.end(), std::size_t{0});
    for (; g_tableWidth != 0 && total > g_tableWidth; --total) {
        std::size_t widest = widths.size();
        for (std::size_t c = 0; c < widths.size(); ++c) {
            if (breaks[c] && widths[c] > leastWords && (widest == widths.size() || widths[c] > widths[widest]))
                widest = c;
        }
        if (widest == widths.size())
            return;
        --widths[widest];
    }
}

constexpr std::string_view kSuggestion = "; did you mean ";

// A number, perhaps with its unit: more words are a sentence that begins with a number.
bool looksNumeric(std::string_view text)
{
    return !text.empty() && (std::isdigit(static_cast<unsigned char>(text[0])) || text[0] == '-' || text == "inf") &&
           std::count(text.begin(), text.end(), ' ') <= 1;
}

} // namespace

std::vector<std::string> nearestNames(std::string_view name, const std::vector<std::string>& known)
{
    constexpr std::size_t atMost = 3;
    std::vector<std::pair<std::size_t, std::string>> ranked;
    const std::size_t limit = std::max<std::size_t>(2, name.size() / 3);
    for (const std::string& candidate : known) {
        const std::size_t longer = std::max(name.size(), candidate.size());
        if (longer - std::min(name.size(), candidate.size()) > limit)
            continue;
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
    return names.empty() ? std::string() : fmt::format("{}{}?", kSuggestion, orList(names));
}

std::vector<std::string> suggestedNames(std::string_view message)
{
    const std::size_t mark = message.rfind(kSuggestion);
    if (mark == std::string_view::npos)
        return {};
    const std::size_t begin = mark + kSuggestion.size();
    std::string_view list = message.substr(begin, message.find('?', begin) - begin);
    std::vector<std::string> names;
    for (const std::string_view separator : {std::string_view(", "), std::string_view(" or ")}) {
        for (std::size_t end = 0; (end = list.find(separator)) != std::string_view::npos;) {
            names.emplace_back(list.substr(0, end));
            list.remove_prefix(end + separator.size());
        }
    }
    names.emplace_back(list);
    return names;
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

std::string shown(std::string_view text)
{
    if (std::all_of(text.begin(), text.end(), [](char c) { return c >= ' ' && c <= '~'; }))
        return std::string(text);
    std::string safe;
    forEachCharacter(text, [&safe](const Character& character) {
        const auto code = static_cast<std::uint32_t>(character.code);
        if (!character.valid)
            safe += fmt::format("\\x{:02x}", static_cast<unsigned char>(character.bytes.front()));
        else if (!misleads(character.code))
            safe += character.bytes;
        else if (code == '\n' || code == '\t' || code == '\r')
            safe += code == '\n' ? "\\n" : code == '\t' ? "\\t" : "\\r";
        else
            safe += code < 0x80 ? fmt::format("\\x{:02x}", code) : fmt::format("\\u{:04x}", code);
    });
    return safe;
}

std::string validUtf8(std::string_view text)
{
    std::string valid;
    forEachCharacter(text, [&valid](const Character& character) {
        valid += character.valid ? character.bytes : std::string_view("\xef\xbf\xbd");
    });
    return valid;
}

std::size_t width(std::string_view text)
{
    if (std::all_of(text.begin(), text.end(), [](char c) { return c >= ' ' && c <= '~'; }))
        return text.size();
    std::size_t columns = 0;
    bool escape = false;
    forEachCharacter(text, [&](const Character& character) {
        escape = escape || character.code == U'\x1b';
        if (!escape)
            columns += character.valid
                           ? static_cast<std::size_t>(std::max(0, wcwidth(static_cast<wchar_t>(character.code))))
                           : 1;
        escape = escape && character.code != U'm';
    });
    return columns;
}

std::string abbreviated(std::string_view text, std::size_t most)
{
    if (text.size() <= most)
        return std::string(text);
    std::size_t end = most;
    while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xc0U) == 0x80U) // not inside a character
        --end;
    return std::string(text.substr(0, end)) + "...";
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
    return shortestText(value);
}

std::string wrapped(std::string_view text, std::size_t columns)
{
    constexpr std::size_t leastWords = 20; // narrower columns of words can't be read
    std::string result;
    for (const std::string& line : split(std::string(text), '\n')) {
        const std::size_t begin = std::min(line.find_first_not_of(' '), line.size());
        const std::size_t gap = line.find("  ", begin);
        const std::size_t column = gap == std::string::npos ? begin : line.find_first_not_of(' ', gap);
        const std::size_t indent = column < line.size() ? column : begin;
        const bool fits = columns < indent + leastWords || width(line) <= columns;
        result += line.substr(0, fits ? line.size() : indent);
        if (!fits) {
            std::string rest = line.substr(indent);
            result += cutLine(rest, columns - indent);
            while (!rest.empty())
                result += '\n' + std::string(indent, ' ') + cutLine(rest, columns - indent);
        }
        result += '\n';
    }
    result.pop_back();
    return result;
}

std::string escapedCsv(const std::string& text)
{
    std::string valid = validUtf8(text);
    if (valid.find_first_of(",\"\r\n") == std::string::npos)
        return valid;
    std::string quoted = "\"";
    for (const char c : valid)
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

void TextTable::fitTo(std::size_t columns)
{
    g_tableWidth = columns;
}

TextTable::Columns TextTable::columns() const
{
    const std::size_t count = m_rows.front().size();
    Columns columns{std::vector<std::size_t>(count, 0), std::vector<bool>(count, false)};
    std::vector<bool> breaks(count, true);
    for (const auto& cells : m_rows) {
        for (std::size_t c = 0; c < cells.size(); ++c) {
            columns.widths[c] = std::max(columns.widths[c], width(cells[c]));
            columns.numeric[c] = columns.numeric[c] || looksNumeric(cells[c]);
            breaks[c] = breaks[c] && (c == 0 || !columns.numeric[c]) && cells[c].find('\x1b') == std::string::npos;
        }
    }
    narrow(columns.widths, breaks);
    return columns;
}

std::string TextTable::text() const
{
    const Columns all = columns();
    std::string text;
    for (const auto& cells : m_rows)
        appendRow(text, cells, all);
    return text;
}

std::string TextTable::next()
{
    if (!m_columns)
        m_columns = columns();
    std::string text;
    for (const auto& cells : m_rows)
        appendRow(text, cells, *m_columns);
    m_rows.clear();
    return text;
}

// As many lines as the cell with the most takes. A cell of colours is never cut.
void TextTable::appendRow(std::string& text, const std::vector<std::string>& cells, const Columns& columns)
{
    const auto& [widths, numeric] = columns;
    std::vector<std::string> rest = cells;
    rest.resize(widths.size());
    do {
        std::string line;
        for (std::size_t c = 0; c < widths.size(); ++c) {
            if (cells.empty()) {
                line += std::string(widths[c], '-') + "  ";
                continue;
            }
            const bool fits = width(rest[c]) <= widths[c] || rest[c].find('\x1b') != std::string::npos;
            const std::string cell = fits ? std::exchange(rest[c], std::string()) : cutLine(rest[c], widths[c]);
            const std::string padding(widths[c] - std::min(widths[c], width(cell)), ' ');
            line += (numeric[c] && c > 0 ? padding + cell : cell + padding) + "  ";
        }
        line.erase(line.find_last_not_of(' ') + 1);
        text += line + '\n';
    } while (std::any_of(rest.begin(), rest.end(), [](const std::string& cell) { return !cell.empty(); }));
}

} // namespace zelm::host

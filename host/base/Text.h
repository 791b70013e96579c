#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zelm::host {

/// The names closest to a mistyped one, best first, none that is far off.
std::vector<std::string> nearestNames(std::string_view name, const std::vector<std::string>& known);
/// "; did you mean A, B or C?", or nothing if no known name is close.
std::string suggestion(std::string_view name, const std::vector<std::string>& known);
/// The names in the suggestion with which a message ends, or to which others have been added.
std::vector<std::string> suggestedNames(std::string_view message);
/// "A, B or C"
std::string orList(const std::vector<std::string>& words);

std::string upper(std::string text);
std::string lower(std::string text);
/// The parts between separators; one, the text itself, if there is none.
std::vector<std::string> split(const std::string& text, char separator);

/// Text as a terminal may have it: control characters, marks that turn the direction of writing, and bytes that aren't
/// UTF-8 as escapes (\n, \x1b, \u202e).
std::string shown(std::string_view text);
/// Text in which U+FFFD stands for each byte that isn't UTF-8.
std::string validUtf8(std::string_view text);
/// The columns that text takes on a terminal, where some characters are wide and some have no width. Sequences that
/// colour take none.
std::size_t width(std::string_view text);
/// A long text's begin, for messages.
std::string abbreviated(std::string_view text, std::size_t most = 60);

/// A number with an SI prefix and four significant digits: si(0.00123, "W") is "1.230 mW"; "none" for NaN.
std::string si(double value, std::string_view unit);
/// The shortest text that reads back as the same float.
std::string exactText(float value);

/// Text whose lines break at spaces to fit; they go on below the last column that they have, as lists of options do.
/// 0 columns leave it as it is.
std::string wrapped(std::string_view text, std::size_t columns);

/// A field of a CSV row, valid UTF-8, in quotes if it needs them.
std::string escapedCsv(const std::string& text);

/// Columns of text, the first left-aligned, the others right-aligned unless they are text.
class TextTable {
public:
    explicit TextTable(std::vector<std::string> header);
    void row(std::vector<std::string> cells);
    /// A line across, in front of totals.
    void rule();
    std::string text() const;
    /// The rows since the last call, for tables without end: columns are as wide as the first call's rows need.
    std::string next();

    /// The width of all tables from now on: columns of words break their lines to fit. 0, as at first, for any.
    static void fitTo(std::size_t columns);

private:
    struct Columns {
        std::vector<std::size_t> widths;
        std::vector<bool> numeric;
    };
    Columns columns() const;
    static void appendRow(std::string& text, const std::vector<std::string>& cells, const Columns& columns);

    std::vector<std::vector<std::string>> m_rows; ///< an empty row is a rule
    std::optional<Columns> m_columns;             ///< of a table without end
};

} // namespace zelm::host

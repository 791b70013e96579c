#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace zelm::host {

/// The names closest to a mistyped one, best first, none that is far off.
std::vector<std::string> nearestNames(std::string_view name, const std::vector<std::string>& known);
/// "; did you mean A, B or C?", or nothing if no known name is close.
std::string suggestion(std::string_view name, const std::vector<std::string>& known);
/// "A, B or C"
std::string orList(const std::vector<std::string>& words);

std::string upper(std::string text);
std::string lower(std::string text);
/// The parts between separators; one, the text itself, if there is none.
std::vector<std::string> split(const std::string& text, char separator);

/// A number with an SI prefix and four significant digits: si(0.00123, "W") is "1.230 mW"; "none" for NaN.
std::string si(double value, std::string_view unit);
/// The shortest text that reads back as the same float.
std::string exactText(float value);

/// A field of a CSV row, in quotes if it needs them.
std::string escapedCsv(const std::string& text);

/// Columns of text, the first left-aligned, the others right-aligned unless they are text.
class TextTable {
public:
    explicit TextTable(std::vector<std::string> header);
    void row(std::vector<std::string> cells);
    /// A line across, in front of totals.
    void rule();
    std::string text() const;

private:
    std::vector<std::vector<std::string>> m_rows; ///< an empty row is a rule
};

} // namespace zelm::host

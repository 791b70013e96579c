#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace zelm::host {

/// How many points of a study warn of what. What differs in its numbers alone, as a junction temperature does from
/// point to point, counts as one warning.
class WarningCounts {
public:
    struct Row {
        std::string text; ///< as the first point says it
        std::size_t points = 0;
        bool isSame = true; ///< in all of them, to the letter
    };

    /// Those of a point.
    void add(const std::vector<std::string>& warnings);
    /// Those of later points.
    void addLater(const WarningCounts& later);
    void addRow(const Row& later);

    /// In the order in which they came up.
    const std::vector<Row>& rows() const
    {
        return m_rows;
    }
    /// Of those beyond the most that are kept, how often points warned.
    std::size_t others() const
    {
        return m_others;
    }
    void addOthers(std::size_t times)
    {
        m_others += times;
    }

private:
    std::vector<Row> m_rows;
    std::map<std::string, std::size_t, std::less<>> m_places; // of rows, by the text without numbers
    std::size_t m_others = 0;
};

/// A row as a line of a report: "... (at 3 of 64 points, numbers of the first)".
std::string warningLine(const WarningCounts::Row& row, std::size_t points);

/// The text with each number outside of quotes as a #: digits in words, VCCO18, are no numbers.
std::string withoutNumbers(std::string_view text);

} // namespace zelm::host

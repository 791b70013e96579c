#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace zelm::host {

/// What feeds rails, other supplies, or both.
struct Supply {
    std::string name;
    std::vector<std::string> rails;
    std::string from;                 ///< another supply, or a source: "12V"; empty: the board's input
    std::optional<double> maxCurrent; ///< A, at its output
    std::optional<double> volts;      ///< at its output; else those of its rails
    std::vector<std::pair<double, double>> efficiency{}; ///< share by load in A, which rises; empty: no loss
};

/// The supplies of a board, and the order in which rails power up.
struct Supplies {
    std::vector<Supply> all;                        ///< in the design's order
    std::vector<std::vector<std::string>> sequence; ///< steps of rails; empty: all at once

    /// The supply of that name; null for a source, and for none.
    const Supply* find(const std::string& name) const;
    /// The supply that has the rail in its list, or null.
    const Supply* feeding(const std::string& rail) const;
};

/// The volts that the name of a source gives: "12V", "3.3 V"; nothing for any other word.
std::optional<double> sourceVolts(const std::string& name);

} // namespace zelm::host

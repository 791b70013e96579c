#pragma once

#include "host/base/Error.h"
#include "host/base/JsonFwd.h"

#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace zelm::host {

/// A value of a design that isn't known for sure: what it may be, and how likely.
struct Distribution {
    enum class Kind { uniform, triangular, normal, discrete };
    using Value = std::variant<double, std::string>;

    Kind kind = Kind::uniform;
    std::string unit{};                                    ///< in which the numbers count; empty for plain ones
    double low = -std::numeric_limits<double>::infinity(); ///< the ends; a normal one is cut there
    double high = std::numeric_limits<double>::infinity();
    double peak = 0.0;           ///< mode or mean
    double sd = 0.0;             ///< of a normal one before it is cut
    std::vector<Value> values{}; ///< of a discrete one: numbers or words
    std::vector<double> weights{};
    bool isWhole = false; ///< where only whole numbers go

    /// What counts where one value does: the middle, the mode, the mean or the heaviest.
    Value centre() const;
    /// "0.1 to 0.25 MHz", "300 MHz, sd 15".
    std::string text() const;
    /// "middle of 0.1 to 0.25", as what one value counts.
    std::string centreText() const;
    bool takesWords() const
    {
        return !values.empty() && values.front().index() == 1;
    }

    bool operator==(const Distribution&) const = default;
};

/// A distribution in a design, by its path.
struct Uncertain {
    std::string path;
    Distribution distribution;
};

/// What is wrong with a distribution, and in which of its fields; empty: in all of it.
struct BadDistribution : Error {
    BadDistribution(std::string inField, const std::string& message) : Error(message), field(std::move(inField)) {}
    std::string field;
};

/// Whether a value that may be a number or word is written as a distribution.
bool isDistribution(const Json& value);
/// Numbers count in the unit that the place has, or in the first that is written. Throws BadDistribution.
Distribution distributionOf(const Json& value, const std::optional<std::string_view>& unit);
/// The unit that its numbers are written with; empty if there is none.
std::string writtenUnitOf(const Json& distribution);
/// The same where only words may stand, whatever they read like.
Distribution distributionOfWords(const Json& value);
/// Whether a value is one that can be read.
bool holdsDistribution(const Json& value);

} // namespace zelm::host

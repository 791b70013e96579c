#pragma once

#include "host/study/Quantity.h"

#include <cstddef>
#include <limits>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace zelm::host {

struct SensitivityWish {
    std::string of = "total";
    double span = 0.1; ///< share of each value that it moves by
    unsigned jobs = 1;
};

/// What another value of an input does to the quantity.
struct Move {
    std::variant<double, std::string> to;
    double change = std::numeric_limits<double>::quiet_NaN(); ///< of the quantity
    std::string why; ///< there is no change: the formulas refuse the value, or the device runs away
};

struct SensitivityRow {
    std::string path;
    std::string unit;
    std::variant<double, std::string> value;
    std::string origin; ///< design, device (a rail's nominal voltage) or default
    Move minus;         ///< to the lower end; of words, the one that changes the quantity downwards most
    Move plus;
    std::vector<Move> words;          ///< in place of a number, each other legal word
    std::optional<double> elasticity; ///< percent per percent, from the nearest values on both sides
    std::optional<double> overSpan;   ///< the same from both ends of the span
    bool agrees = true;               ///< whether the two are alike: the quantity has no step or bend within the span

    double largest() const;
};

struct Sensitivity {
    std::string design;
    NamedQuantity quantity;
    double nominal = 0.0;
    double span = 0.0;
    std::vector<SensitivityRow> rows;     ///< those that move the quantity most first
    std::vector<std::size_t> findOutNext; ///< rows that nobody set and that count
    std::size_t atZero = 0;               ///< inputs of 0, which no percentage moves
};

/// Moves each input of each group that is set or left at its default, each rail's voltage, the environment and each
/// parameter, one at a time. What is carried to an input from elsewhere moves with what it comes from. Numbers stay in
/// their domain, whole numbers move by one at least.
Sensitivity sensitivity(const std::string& designFile, const SensitivityWish& wish);

} // namespace zelm::host

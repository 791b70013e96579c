#pragma once

#include "host/study/Quantity.h"

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace zelm::host {

/// A limit that a quantity is to keep: "total@MAX <= 40 W".
struct Limit {
    NamedQuantity quantity;
    bool isMost = true; ///< the quantity may be at most that, or at least
    double value = 0.0; ///< in the quantity's unit

    /// NaN, which a runaway leaves, keeps no limit.
    bool keptBy(double amount) const
    {
        return isMost ? amount <= value : amount >= value;
    }
    std::string words() const;
};

/// Where a limit begins or ends to be kept.
struct Crossing {
    double value = 0.0;    ///< of what varies: the last that keeps the limit
    std::size_t limit = 0; ///< of the solution's list
    double amount = 0.0;   ///< of the limit's quantity there
    bool ends = true;      ///< whether the limit is kept below the value, or above
};

struct SolveWish {
    std::string vary;               ///< "PATH=LO:HI"
    std::vector<std::string> until; ///< limits
    unsigned jobs = 1;
};

struct Solution {
    std::string design;
    std::string path;
    std::string unit; ///< in which values count; empty for that of the input
    bool isWhole = false;
    double low = 0.0;
    double high = 0.0;
    std::vector<Limit> limits;
    std::vector<double> atLow; ///< of each limit's quantity
    std::vector<double> atHigh;
    std::vector<Crossing> crossings;             ///< by value
    std::vector<std::pair<double, double>> kept; ///< from where to where all limits are kept
    std::optional<std::size_t> decides;          ///< the crossing at which the first kept stretch ends or begins
};

/// Finds out at which values of a place of the design the limits are crossed: on a grid of the range first, so that
/// several crossings are found, then between two points of it. An Error tells what is wrong with the wish.
Solution solve(const std::string& designFile, const SolveWish& wish);

/// A value of what varies as people write it.
std::string solvedValue(const Solution& solution, double value);

} // namespace zelm::host

#pragma once

#include "host/study/Quantity.h"

#include <string>
#include <vector>

namespace zelm::host {

/// What a sweep tells of each point: a quantity, or what is left of a budget.
struct SweepColumn {
    std::string name; ///< as it is asked for, with the process side if it has one
    std::string unit;
    NamedQuantity quantity{};
    std::string budget{};      ///< its name; empty: the quantity
    std::string process{};     ///< of a budget; empty: the worse of those that count
    bool ofOwnProcess = false; ///< of each point, where the process varies
};

/// A budget on a process side that counts.
struct SweepBudget {
    std::string name;
    std::string process;
    std::string unit;
    double limit = 0.0;
    double actual = 0.0; ///< NaN, which keeps no budget, if the device runs away

    /// Less than 0 if the budget is broken.
    double left() const
    {
        return limit - actual;
    }
};

/// Reads "total,rail:VCCINT@MAX,budget:total power", held against the estimate of a point; an Error says what is wrong.
std::vector<SweepColumn> sweepColumns(const std::string& text, const Estimate& estimate, bool variesProcess);
/// The total, static power and junction of each process side, dynamic power, and what is left of each budget.
std::vector<SweepColumn> usualColumns(const Estimate& estimate, bool variesProcess);

/// NaN where the device runs away, or where there is no such thing at that point.
double valueOf(const SweepColumn& column, const Estimate& estimate);

/// On the sides that count; where the process varies, on the point's own.
std::vector<SweepBudget> sweepBudgets(const Estimate& estimate, bool variesProcess);

} // namespace zelm::host

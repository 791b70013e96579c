#pragma once

#include "host/estimate/Running.h"

#include <string>

namespace zelm::host {

/// The inputs of a group whose values don't go together, "DATA_WIDTH 64, DDR_STANDARD LP4": those with another legal
/// value for which the formulas no longer miss the row. Empty if there is none.
std::string combinationWithout(const Running& group, const MissingRow& row);

/// The same for a group that draws nothing on any rail: its inputs select no row, and the formulas take that for 0.
/// Empty if the group draws something, or nothing because a number is 0 or a word switches it off.
std::string combinationWithoutPower(const Running& group);

} // namespace zelm::host

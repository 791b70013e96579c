#pragma once

#include "host/estimate/Running.h"

#include <string>

namespace zelm::host {

/// The inputs of a group whose values don't go together, "DATA_WIDTH 64, DDR_STANDARD LP4": those with another legal
/// value for which the formulas no longer miss the row. Empty if there is none.
std::string combinationWithout(const Running& group, const MissingRow& row);

} // namespace zelm::host

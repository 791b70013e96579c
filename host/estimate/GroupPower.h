#pragma once

#include "host/estimate/Carry.h"
#include "host/estimate/Estimate.h"
#include "host/estimate/Results.h"
#include "host/estimate/Running.h"

#include <string>
#include <vector>

namespace zelm::host {

/// What a group that has been calculated loads the rails with, and what there is to warn of. What makes its power wrong
/// is an Error, or a warning.
GroupResult powerOf(Running& group, const Design& design, const RailVolts& rails, Gaps gaps,
                    std::vector<std::string>& warnings);

} // namespace zelm::host

#pragma once

#include "host/design/ResolvedDevice.h"
#include "host/estimate/Estimate.h"

#include <map>
#include <string>

namespace zelm::host {

/// Adds the static side of an estimate, typical and worst case: closes the thermal loop over the estimate's dynamic
/// power, and fills rails, subsystems, cooling cases and limits.
void addStaticPower(Estimate& estimate, const ResolvedDevice& device, const std::map<std::string, int>& usedCounts,
                    Curves curves);

} // namespace zelm::host

#pragma once

#include "host/design/ResolvedDevice.h"
#include "host/estimate/Estimate.h"
#include "host/estimate/Thermal.h"

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace zelm::host {

/// Adds the static side of an estimate, typical and worst case: closes the thermal loop over the estimate's dynamic
/// power, and fills rails, subsystems, cooling cases and limits.
void addStaticPower(Estimate& estimate, const ResolvedDevice& device, const std::map<std::string, int>& usedCounts,
                    Curves curves);

/// What the device of an estimate draws by itself at a junction temperature, on one process side. Without a device both
/// are empty.
struct StaticSide {
    PowerCurve watts;
    std::function<std::vector<RailResult>(double junction)> rails;
};
StaticSide staticSide(const Estimate& estimate, const std::string& process);

} // namespace zelm::host

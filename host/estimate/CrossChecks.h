#pragma once

#include "host/design/ResolvedDevice.h"
#include "host/estimate/Running.h"

#include <string>
#include <vector>

namespace zelm::host {

/// What no group shows alone: traffic beyond what its target takes, clock loads beyond the device or beyond the
/// resources that other groups name, and what is counted twice. The groups have been calculated.
std::vector<std::string> warningsAcross(const RunningGroups& groups, const ResolvedDevice* device);

} // namespace zelm::host

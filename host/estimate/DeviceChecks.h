#pragma once

#include "host/design/ResolvedDevice.h"
#include "host/estimate/Running.h"

#include <string>
#include <vector>

namespace zelm::host {

/// Of the surroundings alone.
std::vector<std::string> warningsOfEnvironment(const Design& design);

/// What doesn't fit the design's device, or means nothing without one: settings of other devices, more than is in it,
/// limits that nothing is held against. The groups have been calculated.
std::vector<std::string> warningsOfDevice(const Design& design, const RunningGroups& groups,
                                          const ResolvedDevice* device);

} // namespace zelm::host

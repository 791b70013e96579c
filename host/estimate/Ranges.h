#pragma once

#include "host/estimate/Running.h"

#include <string>
#include <vector>

namespace zelm::host {

/// What lies outside the characterised range of a group that has been calculated, in words.
std::vector<std::string> rangeWarnings(Running& group);

} // namespace zelm::host

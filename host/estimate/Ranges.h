#pragma once

#include "host/estimate/Running.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zelm::host {

/// Refuses, with an Error, what no resource can be: a nibble with more I/Os than it has.
void refuseImpossible(const Design& design);

/// The voltage at which the formulas take the power of a processing system's pads, whatever their bank has; nothing for
/// any other output.
std::optional<double> padVolts(const Running& group, std::string_view output);

/// What lies outside the characterised range of a group that has been calculated, in words.
std::vector<std::string> rangeWarnings(Running& group);

} // namespace zelm::host

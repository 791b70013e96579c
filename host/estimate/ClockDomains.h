#pragma once

#include "host/estimate/Results.h"
#include "host/estimate/Running.h"

#include <vector>

namespace zelm::host {

/// Gives a group the frequency of the clock that it names, on all its clock inputs that the design leaves unset.
void carryFrequency(const Design& design, const Group& group, Running& running, std::vector<Carried>& carried);

/// Gives a clock's accounting the loads of the groups that name it, where the design leaves them unset. A clock that no
/// group names keeps what it has.
void carryLoads(const Design& design, const Group& clock, Running& running, std::vector<Carried>& carried);

} // namespace zelm::host

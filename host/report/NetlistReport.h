#pragma once

#include "host/exchange/NetlistDesign.h"
#include "host/exchange/Propagate.h"

#include <string>

namespace zelm::host {

/// What a netlist's cells became, and what is in no group.
std::string netlistText(const NetlistPlan& plan);

/// Which groups were given rates, and where these aren't exact.
std::string propagationText(const Propagation& propagation, const RatedDesign& design);

} // namespace zelm::host

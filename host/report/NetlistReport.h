#pragma once

#include "host/exchange/NetlistDesign.h"

#include <string>

namespace zelm::host {

/// What a netlist's cells became, and what is in no group.
std::string netlistText(const NetlistPlan& plan);

} // namespace zelm::host

#pragma once

#include "host/blocks/Block.h"

#include <string>
#include <vector>

namespace zelm::host {

/// The names of all supply rails.
std::vector<std::string> railNames();

/// Whether a cell is an input of a supply rail's voltage. Its row tells which.
bool takesVolts(const ZelmCellInfo& cell);

/// The rail whose static current holds this rail's too, empty if there is none.
std::string railHolding(const std::string& rail);

} // namespace zelm::host

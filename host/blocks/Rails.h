#pragma once

#include "host/blocks/Block.h"

#include <string>
#include <vector>

namespace zelm::host {

/// The names of all supply rails.
std::vector<std::string> railNames();

/// Whether a cell is an input of a voltage.
bool takesVolts(const ZelmCellInfo& cell);

/// The rail whose voltage an input takes: the one of the cell's own name, or the one that the roll-up tells.
std::string railOf(const Block& block, const ZelmCellInfo& cell);

} // namespace zelm::host

#pragma once

#include "host/blocks/Block.h"

#include <string>
#include <vector>

namespace zelm::host {

/// The values over which a data file must be whole: legal words, and ints that choose rows. Empty if any value is fine.
std::vector<Value> legalValues(const Block& block, const ZelmCellInfo& cell);

/// Whether the formulas ask for a row that need not be there, and take a miss for "no".
bool isMeantToMiss(const Block& block, const MissingRow& row);

} // namespace zelm::host

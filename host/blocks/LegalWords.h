#pragma once

#include "host/blocks/Block.h"

#include <string>
#include <vector>

namespace zelm::host {

/// The values over which a data file must be whole: legal words, and ints that choose rows. Empty if any value is fine.
std::vector<Value> legalValues(const Block& block, const ZelmCellInfo& cell);

/// Whether a data file is whole without a row that the formulas ask for.
bool isMeantToMiss(const Block& block, const MissingRow& row);

/// Whether the formulas take the miss for a plain "no". Other misses come from inputs that don't go together.
bool missesInGoodDesigns(const Block& block, const MissingRow& row);

} // namespace zelm::host

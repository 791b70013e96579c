#pragma once

#include "host/Block.h"

#include <string>
#include <vector>

namespace zelm::host {

/// The values that an input of a block takes: the words of its formulas, or the keys of the table that it chooses from,
/// read from the data file. Empty if any value is fine.
std::vector<Value> legalValues(const Block& block, const ZelmCellInfo& cell);

/// The same as texts.
std::vector<std::string> legalWords(const Block& block, const ZelmCellInfo& cell);

/// Whether the formulas ask for a row that need not be there, and take a miss for "no".
bool isMeantToMiss(const Block& block, const MissingRow& row);

} // namespace zelm::host

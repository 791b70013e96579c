#pragma once

#include "host/blocks/Block.h"
#include "host/blocks/DataLines.h"

#include <string>

namespace zelm::host {

/// What is wrong with a row's value, for people: its type, or a number that its unit or its meaning rules out. Empty if
/// nothing is.
std::string faultOf(const Block& block, const ZelmTableInfo& table, const DataRow& row);

} // namespace zelm::host

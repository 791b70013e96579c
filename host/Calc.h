#pragma once

#include <string>
#include <vector>

namespace zelm::host {

/// The table of all resource kinds.
std::string listBlocks(bool json);
/// Every cell of a block: kind, type, default, unit, meaning.
std::string listCells(const std::string& blockName, bool json);
/// All cells after one calculate with the given CELL=VALUE inputs; bits shows floats as their binary32 pattern.
std::string calc(const std::string& blockName, const std::vector<std::string>& assignments, bool bits, bool json);

} // namespace zelm::host

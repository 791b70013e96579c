#pragma once

#include <map>
#include <set>
#include <string>
#include <utility>

namespace zelm::host {

/// Tables and keys.
using RowSet = std::set<std::pair<std::string, std::string>>;

/// The rows that are missing, by block, because tables that are keyed by the same words (devices, rails, standards)
/// don't hold the same words. Files that can't be read say nothing here.
std::map<std::string, RowSet> rowsMissingBesideOthers();

} // namespace zelm::host

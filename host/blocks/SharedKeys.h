#pragma once

#include <map>
#include <set>
#include <string>
#include <string_view>
#include <utility>

namespace zelm::host {

/// Tables and keys.
using RowSet = std::set<std::pair<std::string, std::string>>;

/// The rows that are missing, by block, because tables that are keyed by the same words (devices, rails, standards)
/// don't hold the same words. Files that can't be read say nothing here.
std::map<std::string, RowSet> rowsMissingBesideOthers();

/// Whether a row's last key, or its value, is one of the words that tables share.
bool hasSharedWord(std::string_view block, std::string_view table, std::string_view key);

} // namespace zelm::host

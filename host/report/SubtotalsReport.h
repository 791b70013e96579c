#pragma once

#include "host/base/JsonFwd.h"
#include "host/estimate/Subtotals.h"

#include <cstddef>
#include <optional>
#include <string>

namespace zelm::host {

/// Which subtotals a person asks for, and in which order.
struct SubtotalsWish {
    By by = By::block;
    std::string sort = "watts"; ///< watts, groups or name; empty for the design's own order
    std::optional<std::size_t> top{};
};

/// An Error names the legal words.
By byWord(const std::string& word);

std::string subtotalsTable(const Estimate& estimate, const SubtotalsWish& wish);
std::string subtotalsCsv(const Estimate& estimate, const SubtotalsWish& wish);
Json subtotalsJson(const Estimate& estimate, const SubtotalsWish& wish);
/// The hierarchy of the design's groups; an empty list if none stands in one.
Json hierarchyJson(const Estimate& estimate);
/// Whether any group stands in a hierarchy.
bool hasHierarchy(const Estimate& estimate);
std::string hierarchyTable(const Estimate& estimate);

} // namespace zelm::host

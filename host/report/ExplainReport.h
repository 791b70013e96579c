#pragma once

#include "host/study/Explain.h"

#include <cstddef>
#include <string>
#include <unordered_map>

namespace zelm::host {

/// How far down an explanation goes below what was asked for.
inline constexpr std::size_t kWholeDepth = static_cast<std::size_t>(-1);

/// As a tree. What occurs again is told once, and named from then on; so are formulas.
std::string explanationText(Explanation& explanation, std::size_t root, std::size_t depth);
/// The same as JSON, of a design of that name.
std::string explanationJson(Explanation& explanation, std::size_t root, std::size_t depth, const std::string& name);

/// Of all quantities of an estimate, for a page that shows what is asked for.
struct PageExplanations {
    /// Texts, pieces of sources, kinds of nodes and rows of data stand once, and nodes name them by their places. The
    /// widest part of it if it is very large.
    std::string json;
    std::unordered_map<std::string, std::size_t> places; ///< of the nodes by name
};
PageExplanations explanationsForPage(const Estimate& estimate);

} // namespace zelm::host

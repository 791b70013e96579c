#pragma once

#include <string>

namespace zelm::host {

/// The page that works the design's estimate out itself, with models and data of its own: what a person types there
/// is estimated at once. The file names the design; folders don't show. An Error says how to get the page if this
/// build has none, and refuses data that aren't the page's.
std::string livePage(const std::string& file, const std::string& design);

} // namespace zelm::host

#pragma once

#include <optional>
#include <string>
#include <vector>

namespace zelm::host {

/// Throws an Error if the page that a command is to write, if any, is a file that the designs or their data stand in.
/// To be asked before the work begins.
void checkPageFile(const std::optional<std::string>& page, const std::vector<std::string>& designs);

} // namespace zelm::host

#pragma once

#include <string>

namespace zelm::host {

/// A design in the one form that all designs can have: fields in the order of the design file's description, one a line
/// but for objects and lists that fit into one; numbers, texts and comments as they are written. An Error tells what is
/// no JSON; file is its name in that.
std::string formattedDesign(const std::string& text, const std::string& file);

} // namespace zelm::host

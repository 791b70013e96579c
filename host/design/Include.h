#pragma once

#include "host/base/JsonFwd.h"
#include "host/base/JsonSource.h"

#include <string>

namespace zelm::host {

/// Reads a design file, or "-" for standard input. The groups and parameters of the files that it includes stand behind
/// its own, and source knows the file and line of each.
Json readDesignTree(const std::string& file, JsonSource& source);
/// The same for a text, whose includes are looked for beside the file that source names.
Json parseDesignTree(const std::string& text, JsonSource& source);

} // namespace zelm::host

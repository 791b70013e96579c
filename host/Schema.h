#pragma once

#include "host/JsonFwd.h"

#include <string>

namespace zelm::host {

/// The JSON Schema of design files, from the cells of all blocks and the words of the data files.
Json designSchema();

/// Writes the reference of all blocks' cells and tables as Markdown files into a directory.
void writeReference(const std::string& directory);

} // namespace zelm::host

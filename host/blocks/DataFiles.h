#pragma once

#include "host/blocks/Block.h"

#include <string>
#include <string_view>
#include <vector>

namespace zelm::host {

/// A data file and what identifies its content.
struct DataFile {
    std::string name; ///< below the data directory
    std::string sha256;
};

/// In hexadecimal.
std::string sha256Of(std::string_view content);
/// The files of these blocks, each once.
std::vector<DataFile> dataFiles(const std::vector<const Block*>& blocks);

} // namespace zelm::host

#pragma once

#include "host/Estimate.h"

#include <string>
#include <vector>

namespace zelm::host {

/// A data file that an estimate rests on.
struct DataFile {
    std::string name; ///< below the data directory
    std::string sha256;
};

std::vector<DataFile> dataFiles(const Estimate& estimate);

} // namespace zelm::host

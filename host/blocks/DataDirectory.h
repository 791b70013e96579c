#pragma once

#include <string>

namespace zelm::host {

/// Chooses the data search list (the option, else QTA_DATADIR, else the installed or the source tree's data), sets
/// QTA_DATADIR for the library, and tells where it came from. An Error if there is none.
std::string chooseDataDirectory(const std::string& option);

} // namespace zelm::host

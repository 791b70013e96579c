#pragma once

#include <chrono>
#include <string>

namespace zelm::host {

struct DataCheck {
    std::string text; ///< what is wrong, then a line per block, then the rows whose absence can't be told
    bool whole = false;
};

/// Whether the data directory is whole: every file parses, every table is there, and every row that the models ask for
/// over all the words and sizes that designs may use; and whether each row is known, of its table's type, and a number
/// that its unit allows.
/// A progress bar shows after that time.
DataCheck checkData(std::chrono::milliseconds barAfter);

} // namespace zelm::host

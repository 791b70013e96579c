#pragma once

#include "host/blocks/Block.h"
#include "host/blocks/DataLines.h"
#include "host/blocks/SharedKeys.h"

#include <string>
#include <vector>

namespace zelm::host {

/// What a data file's rows are worth.
struct RowCheck {
    std::vector<std::string> faults; ///< for people, each with file and line
    RowSet faulty;                   ///< the rows with a value that is wrong
    std::vector<DataRow> untold;     ///< nobody would notice if one were missing
};

/// Checks the types and numbers of all rows and, given those that formulas ask for, their names.
RowCheck checkRows(const Block& block, const DataLines& lines, const RowSet* asked);

} // namespace zelm::host

#pragma once

#include "host/design/Design.h"
#include "host/exchange/Table.h"

#include <string>
#include <vector>

namespace zelm::host {

/// A design made of a table's groups.
struct TableDesign {
    std::string text; ///< in the form of zelm format
    std::size_t groups = 0;
    std::vector<std::string> warnings;
};

/// A row per group under a row of heads: block, name, count, in, clock, and inputs by their cells' names. An empty cell
/// leaves its input unset. What is wrong is an Error with the place in the table.
TableDesign designOfTable(const SheetTable& table);

/// The groups of a design in the same form; inputs that no group sets have no column.
std::string groupsAsCsv(const Design& design);
std::string groupsAsXlsx(const Design& design);

} // namespace zelm::host

#pragma once

#include <span>
#include <string_view>

namespace zelm::host {

/// What the row of a cell tells of its formula, as it is written there.
struct FormulaRow {
    std::string_view formula; ///< the function that computes it; empty for an input
    std::string_view member;  ///< what the function takes; empty if nothing
    std::string_view file;    ///< where the row stands
    int line;
};

/// Of a block's cells, in their order.
std::span<const FormulaRow> formulaRows(std::string_view block);

/// All sources that hold formulas or rows of cells: of each a '\1', its name, '\n' and the file as it stands.
std::string_view formulaSources();

} // namespace zelm::host

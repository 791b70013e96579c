#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace zelm::host {

/// Larger tables are refused.
inline constexpr std::size_t kMostTableRows = 100000;
inline constexpr std::size_t kMostTableColumns = 16384;
inline constexpr std::size_t kMostTableCells = 4000000;
inline constexpr std::size_t kMostCellBytes = 32767;
inline constexpr std::size_t kMostTableBytes = std::size_t{64} << 20; ///< in all cells together

struct TableCell {
    std::size_t column = 0; ///< from 0
    std::string text;
    bool isNumber = false; ///< the file says so; what CSV has is text
};

struct TableRow {
    std::size_t number = 0; ///< from 1, as spreadsheets count
    std::size_t line = 0;   ///< of a file of text; 0 for others
    std::vector<TableCell> cells;
};

/// A sheet of a workbook, or a file of separated values. Rows without a cell are left out.
struct SheetTable {
    std::string file;
    std::string sheet; ///< empty for a file without sheets
    std::vector<TableRow> rows;

    /// "groups.csv:7: row 6", "book.xlsx: sheet Groups, row 6".
    std::string at(const TableRow& row) const;
    /// The same with ", column C (TOGGLE_RATE)".
    std::string at(const TableRow& row, std::size_t column, std::string_view head) const;
};

/// Reads separated values: commas, semicolons or tabs, whichever stands behind the first field; fields in quotes may
/// hold any of them, quotes and line breaks. An Error tells the line of what is broken.
SheetTable readCsv(const std::string& file, std::string_view text);

/// Reads a table by what the file holds. A sheet's name is for workbooks, whose first sheet is read if it is empty.
SheetTable readTable(const std::string& file, const std::string& sheet);

} // namespace zelm::host

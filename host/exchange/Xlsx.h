#pragma once

#include "host/exchange/Table.h"

#include <string>
#include <string_view>

namespace zelm::host {

/// A sheet of a workbook in the Office Open XML form, the first one if the name is empty. Of formulas their results
/// count. An Error tells what is broken or beyond the limits, with the sheet, row and column if it is a cell.
SheetTable readXlsx(const std::string& file, std::string_view bytes, const std::string& sheet);

} // namespace zelm::host

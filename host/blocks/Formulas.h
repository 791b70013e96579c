#pragma once

#include "host/blocks/Block.h"

#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

namespace zelm::host {

/// A piece of the sources that the library was built from.
struct SourceText {
    std::string_view file; ///< from the source folder's root
    std::size_t line = 0;  ///< its first
    std::string_view text; ///< whole lines

    bool operator==(const SourceText&) const = default;
};

/// A cell's formula as it stands in the sources.
struct Formula {
    SourceText own;                 ///< the function; of an input the row that holds its default
    std::string_view call;          ///< the function's name; with a template's arguments: "rate<fpAdd>"
    std::string_view argument;      ///< the family's member that it computes for: "kVccint"; empty if it takes none
    std::vector<SourceText> member; ///< what sets that member apart
};

/// Looked up at the first question and known from then on.
const Formula& formulaOf(const Block& block, const ZelmCellInfo& cell);

/// The functions and constants of the block's sources that pieces of them name, those that these name, and so on.
std::vector<SourceText> helpersOf(const Block& block, const std::vector<SourceText>& pieces);

/// A whole file of those that hold formulas or rows of cells; nothing if there is none of that name.
std::optional<std::string_view> sourceFile(std::string_view name);

} // namespace zelm::host

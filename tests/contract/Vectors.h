#pragma once

#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace zelm::test {

using CellValue = std::variant<int, float, std::string>;
using NamedValues = std::vector<std::pair<std::string, CellValue>>;

struct VectorCase {
    NamedValues in;     ///< the inputs that the host sets
    NamedValues out;    ///< every cell after calculate, in enum order
    NamedValues pulled; ///< cells that calculate doesn't reach, after pulling each
    std::string where;  ///< set, case and inputs, for messages
};

/// One of tests/vectors/<block>/<set>: tables, and cases computed by an independent implementation.
struct VectorSet {
    std::string directory;
    std::vector<std::string> cells;
    std::vector<VectorCase> cases;
};

std::vector<VectorSet> readVectors(const std::string& block);

} // namespace zelm::test

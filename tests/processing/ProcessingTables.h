#pragma once

#include "support/DataDirectory.h"

#include <cstdio>
#include <map>
#include <string>
#include <string_view>

namespace zelm::test {

/// One table of a hand-made data file: its rows, which a test may change or erase before it loads them.
using TableRows = std::map<std::string, float>;

/// The table in libconfig's format, every number with all its bits.
inline std::string tableText(std::string_view group, const TableRows& rows)
{
    std::string text = std::string(group) + " : {";
    for (const auto& [key, value] : rows) {
        char number[32];
        std::snprintf(number, sizeof number, "%.9e", static_cast<double>(value));
        text += key + " = " + number + "; ";
    }
    return text + "};\n";
}

} // namespace zelm::test

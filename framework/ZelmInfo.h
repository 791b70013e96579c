#pragma once

#include <string_view>

/// What a block tells about one cell of its parameter block, taken from the row that defines the cell.
struct ZelmCellInfo {
    enum class Kind { userInput, modelOutput, intermediate };
    enum class Type { integer, real, text };

    std::string_view name;     ///< the enumerator: CLOCK_FREQ
    std::string_view function; ///< the name behind get or calculate: ClockFreq
    Kind kind;
    Type type;
    std::string_view
        defaultText;       ///< the default as it stands in the row, an expression if derived; empty if not an input
    std::string_view unit; ///< empty for plain numbers and text
    std::string_view meaning;
};

/// What a block tells about one table of its data file.
struct ZelmTableInfo {
    std::string_view group;  ///< the setting's name in the file: PER_NODE_CAP
    std::string_view member; ///< the name behind get: PerNodeCap
    std::string_view type;   ///< bool, int, float or string
    std::string_view keys;   ///< the key chain, outermost first, separated by ", "
    std::string_view unit;
    std::string_view meaning;
};

#pragma once

#include "framework/ZelmTable.h"
#include <locale>

#include <ostream>
#include <sstream>
#include <string>
#include <string_view>

namespace zelm {

/// Writes the text of reflect(): one line per value, indented by depth. The depth is passed along, so that any number
/// of blocks may be written at the same time.
class Reflection {
public:
    Reflection()
    {
        m_out.imbue(std::locale::classic()); // whichever locale the host has set
        m_out << std::boolalpha;
    }

    template <class T>
    void value(int depth, std::string_view name, const T& value)
    {
        indent(depth) << name << " = " << value << '\n';
    }

    template <class T>
    void table(std::string_view name, const Table<T>& table)
    {
        m_out << name << " ( Container with " << table.size() << " elements )\n";
        int index = 0;
        table.forEach([&](std::string_view key, const T& entry) {
            const std::string element = std::string(name) + '[' + std::to_string(index++) + ']';
            indent(1) << element << " ( Tuple with 2 elements )\n";
            value(2, element + "[0]", key);
            value(2, element + "[1]", entry);
        });
    }

    std::string text() const
    {
        return m_out.str();
    }

private:
    std::ostream& indent(int depth)
    {
        return m_out << std::string(static_cast<std::size_t>(depth), '\t');
    }

    std::ostringstream m_out;
};

} // namespace zelm

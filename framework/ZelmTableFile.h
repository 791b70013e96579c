#pragma once

#include "framework/ZelmExport.h"
#include "framework/ZelmTable.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace zelm {

/// A data file in the plain form that data are written in: groups, whole numbers, numbers with a decimal point, true,
/// false and strings without escapes, each ended by a semicolon, with line comments between them. Reading that takes a
/// tenth of what libconfig takes. Whatever else a file holds, mistakes too, is libconfig's alone to judge.
class ZELM_EXPORT TableFile {
public:
    explicit TableFile(const std::string& path);
    TableFile(const TableFile&) = delete;
    TableFile& operator=(const TableFile&) = delete;

    /// Whether all of the file is in that form, and libconfig would take it.
    bool isPlain() const
    {
        return m_plain;
    }

    /// Of a plain file: loads the rows of a block's group into table, as ZelmHelperUtils::loadCfgDataToVar does. False
    /// if that is libconfig's to do, with rows perhaps loaded: there is no such group, or a value's conversion is its
    /// own.
    bool load(std::string_view block, std::string_view group, Table<bool>& table) const;
    bool load(std::string_view block, std::string_view group, Table<int>& table) const;
    bool load(std::string_view block, std::string_view group, Table<float>& table) const;
    bool load(std::string_view block, std::string_view group, Table<std::string>& table) const;

private:
    struct Group {
        std::size_t end; // the setting behind its last one
    };
    using Value = std::variant<Group, bool, int, double, std::string_view>;
    struct Setting {
        std::string_view name;
        Value value;
    };
    class Scanner;

    const Setting* findGroup(std::size_t begin, std::size_t end, std::string_view name) const;
    template <class T>
    bool loadTable(std::string_view block, std::string_view group, Table<T>& table) const;
    template <class T>
    bool loadRows(std::size_t begin, std::size_t end, std::string& key, Table<T>& table) const;
    template <class T>
    static bool put(std::string_view key, const Value& value, Table<T>& table);

    std::string m_text;
    std::vector<Setting> m_settings; // a group's own behind it
    bool m_plain;
};

} // namespace zelm

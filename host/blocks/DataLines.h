#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace libconfig {
class Config;
}

namespace zelm::host {

/// The path of a file of the data search list, "powercfg/orvane/....cfg"; of none if no directory has it.
std::string dataPath(const std::string& file);

/// The path of a data file that can be loaded. An Error if there is none, if it isn't an ordinary file or includes one
/// that isn't, or if no person wrote its lines: libconfig would wait for it, or take minutes over it.
std::string loadablePath(const std::string& file);

/// An array or list where a row should be.
struct NoScalar {};

/// A row of a data file as it is written, which may not be what its table holds.
struct DataRow {
    std::string table; ///< empty for a setting beside the block's own
    std::string key;   ///< the names below the table, joined by '.'; empty for a table that is no group
    unsigned int line;
    std::variant<bool, std::int64_t, double, std::string, NoScalar> value;
};

/// On which lines a data file has its groups, for messages: reads it once more, since loaded tables know no lines.
class DataLines {
public:
    /// An Error if the file can't be read.
    explicit DataLines(const std::string& file);
    ~DataLines();
    DataLines(const DataLines&) = delete;
    DataLines& operator=(const DataLines&) = delete;

    /// "path:line" of the deepest group on the way to a key of a table that the file does have.
    std::string where(const std::string& table, const std::string& key) const;
    std::string where(const DataRow& row) const;

    /// All rows, in the file's order.
    std::vector<DataRow> rows() const;

private:
    std::string m_path;
    std::string m_root;
    std::unique_ptr<libconfig::Config> m_cfg;
};

} // namespace zelm::host

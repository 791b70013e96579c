#pragma once

#include <memory>
#include <string>

namespace libconfig {
class Config;
}

namespace zelm::host {

/// The path of a file of the data search list, "powercfg/orvane/....cfg"; of none if no directory has it.
std::string dataPath(const std::string& file);

/// On which lines a data file has its groups, for messages: reads it once more, since loaded tables know no lines.
class DataLines {
public:
    explicit DataLines(const std::string& file);
    ~DataLines();
    DataLines(const DataLines&) = delete;
    DataLines& operator=(const DataLines&) = delete;

    /// "path:line" of the deepest group on the way to a key of a table that the file does have.
    std::string where(const std::string& table, const std::string& key) const;

private:
    std::string m_path;
    std::string m_root;
    std::unique_ptr<libconfig::Config> m_cfg;
};

} // namespace zelm::host

#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace zelm::test {

/// Sets QTA_DATADIR for a scope; std::nullopt unsets it.
class DataDirVariable {
public:
    explicit DataDirVariable(const std::optional<std::string>& value);
    ~DataDirVariable();
    DataDirVariable(const DataDirVariable&) = delete;
    DataDirVariable& operator=(const DataDirVariable&) = delete;

private:
    std::optional<std::string> m_before;
};

/// A temporary data directory that is QTA_DATADIR, removed at the end of the scope.
class TemporaryDataDirectory {
public:
    TemporaryDataDirectory();
    ~TemporaryDataDirectory();
    TemporaryDataDirectory(const TemporaryDataDirectory&) = delete;
    TemporaryDataDirectory& operator=(const TemporaryDataDirectory&) = delete;

    const std::filesystem::path& path() const
    {
        return m_path;
    }
    std::filesystem::path fileOf(std::string_view className) const;
    /// Writes "powercfg/orvane/<className>.cfg".
    void write(std::string_view className, std::string_view text) const;

private:
    std::filesystem::path m_path;
    std::optional<DataDirVariable> m_variable;
};

/// The data that the project ships.
std::string shippedDataDirectory();

} // namespace zelm::test

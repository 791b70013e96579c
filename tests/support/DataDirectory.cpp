#include "support/DataDirectory.h"

#include <cstdlib>
#include <fstream>
#include <stdexcept>

namespace zelm::test {

namespace {

void assign(const std::optional<std::string>& value)
{
    if (value)
        setenv("QTA_DATADIR", value->c_str(), 1);
    else
        unsetenv("QTA_DATADIR");
}

// A data block is built before a test's own tables are there when a fixture holds a reference to it: let it find
// something.
[[maybe_unused]] const int shippedByDefault = setenv("QTA_DATADIR", ZELM_SOURCE_DIR "/data", 0);

} // namespace

DataDirVariable::DataDirVariable(const std::optional<std::string>& value)
{
    if (const char* before = std::getenv("QTA_DATADIR"))
        m_before = before;
    assign(value);
}

DataDirVariable::~DataDirVariable()
{
    assign(m_before);
}

TemporaryDataDirectory::TemporaryDataDirectory()
{
    std::string name = (std::filesystem::temp_directory_path() / "zelm-test-XXXXXX").string();
    if (!mkdtemp(name.data()))
        throw std::runtime_error("cannot make a temporary directory " + name);
    m_path = name;
    std::filesystem::create_directories(m_path / "powercfg/orvane");
    m_variable.emplace(m_path.string());
}

TemporaryDataDirectory::~TemporaryDataDirectory()
{
    m_variable.reset();
    std::filesystem::remove_all(m_path);
}

std::filesystem::path TemporaryDataDirectory::fileOf(std::string_view className) const
{
    return m_path / "powercfg/orvane" / (std::string(className) + ".cfg");
}

void TemporaryDataDirectory::write(std::string_view className, std::string_view text) const
{
    std::ofstream(fileOf(className)) << text;
}

std::string shippedDataDirectory()
{
    return ZELM_SOURCE_DIR "/data";
}

} // namespace zelm::test

#include "host/blocks/DataLines.h"

#include "host/base/Error.h"
#include "host/base/Files.h"
#include "host/base/Text.h"

#include "framework/ZelmData.h"

#include <fmt/format.h>
#include <libconfig.h++>

#include <cstdlib>
#include <filesystem>

namespace zelm::host {

namespace {

decltype(DataRow::value) valueOf(const libconfig::Setting& setting)
{
    using libconfig::Setting;
    switch (setting.getType()) {
    case Setting::TypeBoolean:
        return static_cast<bool>(setting);
    case Setting::TypeInt:
        return std::int64_t{static_cast<int>(setting)};
    case Setting::TypeInt64:
        return std::int64_t{static_cast<long long>(setting)};
    case Setting::TypeFloat:
        return static_cast<double>(setting);
    case Setting::TypeString:
        return std::string(setting.c_str());
    default:
        return NoScalar{};
    }
}

constexpr std::string_view kInclude = "@include";
constexpr std::size_t kLongestLine = 10000;

// Whether a text has a line of more characters, found without a look at each line.
bool hasLineAbove(std::size_t most, std::string_view text)
{
    for (std::size_t at = 0; text.size() - at > most;) {
        const std::size_t end = text.rfind('\n', at + most);
        if (end == std::string_view::npos || end < at)
            return true;
        at = end + 1;
    }
    return false;
}

// The rows at and below a setting, whose names so far are given.
void gather(const libconfig::Setting& setting, const std::string& table, const std::string& key,
            std::vector<DataRow>& rows)
{
    if (!setting.isGroup()) {
        rows.push_back({table, key, setting.getSourceLine(), valueOf(setting)});
        return;
    }
    for (const libconfig::Setting& child : setting)
        gather(child, table, fmt::format("{}{}{}", key, key.empty() ? "" : ".", child.getName()), rows);
}

} // namespace

std::string dataPath(const std::string& file)
{
    try {
        const std::string directory = ZelmData::getQTADataDir(file);
        return directory.empty() ? "" : directory + "/" + file;
    } catch (const std::exception&) { // the library's file system throws where it may not look
        throw DataError(fmt::format("{}: the data search list {} has a folder that can't be looked into", file,
                                    std::getenv("QTA_DATADIR")));
    }
}

std::string loadablePath(const std::string& file)
{
    std::string path = dataPath(file);
    if (path.empty())
        throw DataError(fmt::format("{}: no directory of the data search list holds this file (looked in {})", file,
                                    std::getenv("QTA_DATADIR")));
    const auto refuse = [](const std::string& which, const std::string& why) {
        if (!why.empty())
            throw DataError(fmt::format("{}: cannot be read: {}", which, why));
    };
    refuse(path, whyUnreadable(path));
    const std::string text = [&] {
        try {
            return readFile(path);
        } catch (const Error& error) {
            throw DataError(error.what());
        }
    }();
    if (text.find(kInclude) == std::string::npos && !hasLineAbove(kLongestLine, text))
        return path;
    std::size_t number = 0;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t end = std::min(text.find('\n', at), text.size());
        const std::string_view line = std::string_view(text).substr(at, end - at);
        at = end + 1;
        ++number;
        if (line.size() > kLongestLine)
            refuse(fmt::format("{}:{}", path, number), fmt::format("a line of more than {} characters", kLongestLine));
        const std::size_t begin = std::min(line.find_first_not_of(" \t"), line.size());
        if (line.compare(begin, kInclude.size(), kInclude) != 0)
            continue;
        const std::vector<std::string> words = split(std::string(line), '"');
        if (words.size() > 1)
            refuse(fmt::format("{}:{}: {}", path, number, words[1]), whyUnreadable(words[1]));
    }
    return path;
}

DataLines::DataLines(const std::string& file)
    : m_path(loadablePath(file)), m_root(std::filesystem::path(file).stem().string()),
      m_cfg(std::make_unique<libconfig::Config>())
{
    try {
        m_cfg->readFile(m_path.c_str());
    } catch (const libconfig::ParseException& error) {
        throw DataError(fmt::format("{}:{}: {}", m_path, error.getLine(), error.getError()));
    } catch (const libconfig::ConfigException&) {
        throw DataError(fmt::format("{}: cannot be read", m_path));
    }
}

DataLines::~DataLines() = default;

std::string DataLines::where(const std::string& table, const std::string& key) const
{
    unsigned int line = 1;
    const libconfig::Setting* here = &m_cfg->getRoot();
    const std::string path = fmt::format("{}.{}.{}", m_root, table, key);
    for (std::size_t start = 0, dot = path.find('.'); dot != std::string::npos; dot = path.find('.', start)) {
        const std::string name = path.substr(start, dot - start);
        if (!here->isGroup() || !here->exists(name))
            break;
        here = &(*here)[name.c_str()];
        line = here->getSourceLine();
        start = dot + 1;
    }
    return fmt::format("{}:{}", m_path, line);
}

std::string DataLines::where(const DataRow& row) const
{
    return fmt::format("{}:{}", m_path, row.line);
}

std::vector<DataRow> DataLines::rows() const
{
    std::vector<DataRow> rows;
    for (const libconfig::Setting& block : m_cfg->getRoot()) {
        if (block.getName() != m_root || !block.isGroup()) {
            rows.push_back({"", block.getName(), block.getSourceLine(), NoScalar{}});
            continue;
        }
        for (const libconfig::Setting& table : block)
            gather(table, table.getName(), "", rows);
    }
    return rows;
}

} // namespace zelm::host

#include "host/blocks/DataLines.h"

#include "host/base/Error.h"

#include "framework/ZelmData.h"

#include <fmt/format.h>
#include <libconfig.h++>

#include <cstdlib>
#include <filesystem>

namespace zelm::host {

std::string dataPath(const std::string& file)
{
    try {
        const std::string directory = ZelmData::getQTADataDir(file);
        return directory.empty() ? "" : directory + "/" + file;
    } catch (const std::exception&) { // the library's file system throws where it may not look
        throw Error(fmt::format("{}: the data search list {} has a folder that can't be looked into", file,
                                std::getenv("QTA_DATADIR")));
    }
}

DataLines::DataLines(const std::string& file)
    : m_path(dataPath(file)), m_root(std::filesystem::path(file).stem().string()),
      m_cfg(std::make_unique<libconfig::Config>())
{
    m_cfg->readFile(m_path.c_str());
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

} // namespace zelm::host

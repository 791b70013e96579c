#include "host/blocks/DataDirectory.h"

#include "host/base/Error.h"
#include "host/base/Text.h"

#include <fmt/format.h>

#include <cstdlib>
#include <filesystem>

namespace zelm::host {

std::string chooseDataDirectory(const std::string& option)
{
    const auto check = [](const std::string& name, const std::string& directories) {
        for (const std::string& directory : split(directories, ':')) {
            std::error_code unexamined;
            if (!directory.empty() && std::filesystem::is_directory(directory + "/powercfg", unexamined))
                return;
        }
        throw DataError(fmt::format("{} {}: this directory has no powercfg folder (the data are in "
                                    "powercfg/orvane/*.cfg below it)",
                                    name, directories));
    };
    const auto use = [](const std::string& directories, const char* origin) {
        setenv("QTA_DATADIR", directories.c_str(), 1);
        return fmt::format("data: {} ({})", directories, origin);
    };
    if (!option.empty()) {
        check("--datadir", option);
        return use(option, "--datadir");
    }
    if (const char* variable = std::getenv("QTA_DATADIR"); variable && *variable) {
        check("QTA_DATADIR", variable);
        return use(variable, "QTA_DATADIR");
    }
    std::error_code ignored;
    const auto self = std::filesystem::read_symlink("/proc/self/exe", ignored);
    const std::string beside = (self.parent_path() / "../share/zelm/data").lexically_normal().string();
    if (!ignored && std::filesystem::is_directory(beside))
        return use(beside, "installed");
    for (const char* directory : {ZELM_INSTALLED_DATADIR, ZELM_SOURCE_DATADIR}) {
        if (std::filesystem::is_directory(directory))
            return use(directory, directory == std::string_view(ZELM_SOURCE_DATADIR) ? "source tree" : "installed");
    }
    throw DataError(fmt::format("no data directory: there is no {}, {} or {}; give --datadir or set QTA_DATADIR",
                                beside, ZELM_INSTALLED_DATADIR, ZELM_SOURCE_DATADIR));
}

} // namespace zelm::host

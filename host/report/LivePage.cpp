#include "host/report/LivePage.h"

#include "host/base/Error.h"
#include "host/base/Files.h"
#include "host/base/Json.h"
#include "host/blocks/DataFiles.h"
#include "host/report/HtmlPage.h"

#include <fmt/format.h>

#include <filesystem>
#include <string_view>
#include <system_error>
#include <vector>

namespace zelm::host {

namespace {

// Beside the installed tool or data, or where the source tree builds it.
std::string pageFile()
{
    std::error_code ignored;
    const auto self = std::filesystem::read_symlink("/proc/self/exe", ignored);
    const std::string beside = (self.parent_path() / "../share/zelm/live.html").lexically_normal().string();
    for (const std::string& file :
         {beside, std::string(ZELM_INSTALLED_LIVE_PAGE), std::string(ZELM_SOURCE_LIVE_PAGE)}) {
        if (whyUnreadable(file).empty())
            return file;
    }
    throw Error(
        fmt::format("the live page isn't built: there is no {}, {} or {}; `make live` in the source tree builds "
                    "it, and cmake --install then installs it",
                    beside, ZELM_INSTALLED_LIVE_PAGE, ZELM_SOURCE_LIVE_PAGE));
}

// The page's answers are to be the tool's.
void checkData(const std::string& page, const std::string& file)
{
    std::vector<const Block*> all;
    for (const Block& block : blocks())
        all.push_back(&block);
    for (const DataFile& data : dataFiles(all)) {
        if (page.find(data.sha256) == std::string::npos)
            throw Error(fmt::format("{} was built with another {} than this run reads: `make live` builds it anew with "
                                    "the source tree's data",
                                    file, data.name));
    }
}

} // namespace

std::string livePage(const std::string& file, const std::string& design)
{
    const std::string path = pageFile();
    std::string page = readFile(path);
    checkData(page, path);
    constexpr std::string_view mark = "/*DESIGN*/";
    const std::size_t at = page.find(mark);
    if (at == std::string::npos)
        throw Error(fmt::format("{} is no live page: it has no {}", path, mark));
    const Json given{{"file", std::filesystem::path(file).filename().string()}, {"text", design}};
    return page.replace(at, mark.size(), forScript(compactJson(given)));
}

} // namespace zelm::host

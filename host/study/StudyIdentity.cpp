#include "host/study/StudyIdentity.h"

#include "host/base/Json.h"
#include "host/base/Text.h"
#include "host/blocks/DataFiles.h"
#include "host/estimate/Estimate.h"

#include <fmt/format.h>

namespace zelm::host {

std::vector<const Block*> blocksOf(const Estimate& estimate)
{
    std::vector<const Block*> blocks;
    if (estimate.design.device)
        blocks = {&block("Parts"), &block("Static")};
    for (const GroupResult& group : estimate.groups)
        blocks.push_back(group.block);
    return blocks;
}

Json studyIdentity(const char* study, const std::string& designName, const Json& design,
                   const std::vector<const Block*>& blocks)
{
    Json files = Json::array();
    for (const DataFile& file : dataFiles(blocks))
        files.push_back(fmt::format("{}  {}", file.sha256, file.name));
    return {{"tool", "zelm"},
            {"version", ZELM_VERSION},
            {"study", study},
            {"design", designName},
            {"designSha256", sha256Of(compactJson(design))},
            {"dataFiles", std::move(files)}};
}

} // namespace zelm::host

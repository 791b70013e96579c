#include "host/commands/PageFile.h"

#include "host/base/Files.h"
#include "host/base/Json.h"
#include "host/blocks/DataLines.h"
#include "host/design/Include.h"

namespace zelm::host {

void checkPageFile(const std::optional<std::string>& page, const std::vector<std::string>& designs)
{
    if (!page)
        return;
    std::vector<std::string> inputs = designs;
    for (const std::string& design : designs) {
        if (design == kStandardInput)
            continue; // which can be read only once
        JsonSource source;
        readDesignTree(design, source);
        for (const std::string& file : source.includedFiles())
            inputs.push_back(file);
    }
    for (const Block& block : blocks())
        inputs.push_back(dataPath(block.dataFile()));
    refuseOverwriting({*page}, inputs);
}

} // namespace zelm::host

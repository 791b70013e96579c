#include "host/base/Json.h"
#include "host/base/Text.h"
#include "host/blocks/Block.h"
#include "host/commands/Command.h"

namespace zelm::host {

namespace {

// The table of all resource kinds.
std::string listBlocks(bool json)
{
    if (json) {
        Json list = Json::array();
        for (const Block& b : blocks())
            list.push_back(
                {{"block", b.name}, {"subsystem", b.subsystem}, {"title", b.title}, {"cells", b.cells.size()}});
        return jsonText({{"format", kJsonFormat}, {"blocks", std::move(list)}});
    }
    TextTable table({"Block", "Subsystem", "Cells", "What it is"});
    for (const Block& b : blocks())
        table.row(
            {std::string(b.name), std::string(b.subsystem), std::to_string(b.cells.size()), std::string(b.title)});
    return table.text();
}

} // namespace

Action declareBlocks(Options& options)
{
    const bool& json = options.flag("--json", "Print JSON");
    return [&json](Run& run) {
        run.out += listBlocks(json);
        return kSuccess;
    };
}

} // namespace zelm::host

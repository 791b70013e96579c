#include "host/base/Json.h"
#include "host/base/Text.h"
#include "host/blocks/Block.h"
#include "host/blocks/Uncertainty.h"
#include "host/commands/Command.h"

#include <fmt/format.h>

namespace zelm::host {

namespace {

std::string shownDefault(const ZelmCellInfo& cell)
{
    if (cell.kind != ZelmCellInfo::Kind::userInput)
        return {};
    const std::string constant = constantDefault(cell);
    return constant.empty() && cell.defaultText != "\"\"" ? std::string("derived") : constant;
}

// Every cell of a block: kind, type, default, unit, meaning.
std::string listCells(const std::string& blockName, bool json)
{
    const Block& b = block(blockName);
    if (json) {
        Json list = Json::array();
        for (const ZelmCellInfo& cell : b.cells)
            list.push_back({{"cell", cell.name},
                            {"kind", kindWord(cell.kind)},
                            {"type", typeWord(cell.type)},
                            {"default", shownDefault(cell)},
                            {"unit", cell.unit},
                            {"meaning", cell.meaning}});
        return jsonText(list);
    }
    TextTable table({"Cell", "Kind", "Type", "Default", "Unit", "Meaning"});
    for (const ZelmCellInfo& cell : b.cells)
        table.row({std::string(cell.name), std::string(kindWord(cell.kind)), std::string(typeWord(cell.type)),
                   shownDefault(cell), std::string(cell.unit), std::string(cell.meaning)});
    std::string text = table.text();
    const auto known = uncertainties();
    if (const auto of = known.find(b.name); of != known.end() && !of->second.empty()) {
        text += "Uncertainty, one standard deviation over the number:\n";
        for (const Uncertainty& uncertainty : of->second)
            text += fmt::format("  {}\n", uncertaintyWords(uncertainty));
    }
    return text;
}

} // namespace

Action declareCells(Options& options)
{
    const std::string& blockName = options.required("block", "Block name");
    const bool& json = options.flag("--json", "Print JSON");
    return [&blockName, &json](Run& run) {
        run.out += listCells(blockName, json);
        return kSuccess;
    };
}

} // namespace zelm::host

#include "host/base/Json.h"
#include "host/base/Text.h"
#include "host/blocks/Legal.h"
#include "host/blocks/Uncertainty.h"
#include "host/commands/Command.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

namespace zelm::host {

namespace {

std::string shownDefault(const ZelmCellInfo& cell)
{
    if (cell.kind != ZelmCellInfo::Kind::userInput)
        return {};
    const std::string constant = constantDefault(cell);
    return constant.empty() && cell.defaultText != "\"\"" ? std::string("derived") : constant;
}

// What stands in the last but one column: what is legal in an input, all its words if they are asked for, and where an
// output goes.
std::string roleOf(const Block& block, const ZelmCellInfo& cell, bool spelledOut)
{
    if (cell.kind != ZelmCellInfo::Kind::userInput)
        return goesText(cell);
    const std::vector<std::string> words = spelledOut ? legalWords(block, cell) : std::vector<std::string>();
    return words.empty() ? legalText(cell) : fmt::format("{}", fmt::join(words, ", "));
}

// The cells of a block, all or its inputs: kind, type, default, unit, what is legal or where it goes, meaning.
std::string listCells(const std::string& blockName, bool inputs, bool json)
{
    const Block& b = block(blockName);
    Json list = Json::array();
    TextTable table({"Cell", "Kind", "Type", "Default", "Unit", inputs ? "Legal" : "Legal, or goes to", "Meaning"});
    for (const ZelmCellInfo& cell : b.cells) {
        const bool isInput = cell.kind == ZelmCellInfo::Kind::userInput;
        if (inputs && !isInput)
            continue;
        const std::string role = roleOf(b, cell, inputs);
        if (!json) {
            table.row({std::string(cell.name), std::string(kindWord(cell.kind)), std::string(typeWord(cell.type)),
                       shownDefault(cell), std::string(cell.unit), role, std::string(cell.meaning)});
            continue;
        }
        Json entry{{"cell", cell.name},           {"kind", kindWord(cell.kind)},
                   {"type", typeWord(cell.type)}, {"default", shownDefault(cell)},
                   {"unit", cell.unit},           {"meaning", cell.meaning}};
        if (!role.empty())
            entry[isInput ? "legal" : "goesTo"] = role;
        list.push_back(std::move(entry));
    }
    if (json)
        return jsonText({{"format", kJsonFormat}, {"block", b.name}, {"cells", std::move(list)}});
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
    const bool& inputs = options.flag("--inputs", "The inputs only, with all legal words and numbers");
    const bool& json = options.flag("--json", "Print JSON");
    return [&blockName, &inputs, &json](Run& run) {
        run.out += listCells(blockName, inputs, json);
        return kSuccess;
    };
}

} // namespace zelm::host

#include "host/base/Json.h"
#include "host/base/Text.h"
#include "host/blocks/Block.h"
#include "host/blocks/LegalWords.h"
#include "host/commands/Command.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <cmath>

namespace zelm::host {

namespace {

std::string shownDefault(const ZelmCellInfo& cell)
{
    if (cell.kind != ZelmCellInfo::Kind::userInput)
        return {};
    const std::string constant = constantDefault(cell);
    return constant.empty() && cell.defaultText != "\"\"" ? std::string("derived") : constant;
}

// The words, or the numbers, that an input takes.
std::string shownLegal(const Block& block, const ZelmCellInfo& cell)
{
    const zelm::Legal& legal = cell.legal;
    if (cell.type == ZelmCellInfo::Type::text) {
        const std::vector<std::string> words = legalWords(block, cell);
        return words.empty() ? "any text" : fmt::format("one of {}", fmt::join(words, ", "));
    }
    if (!legal.text.empty())
        return fmt::format("one of {}", fmt::join(split(std::string(legal.text), '|'), ", "));
    const bool above = legal.lowest > 0.0 && legal.lowest < 1e-30; // the least number that isn't 0
    std::string range = !std::isfinite(legal.lowest)   ? "any"
                        : above                        ? "above 0"
                        : std::isfinite(legal.highest) ? fmt::format("from {:g} to {:g}", legal.lowest, legal.highest)
                                                       : fmt::format("from {:g}", legal.lowest);
    if (std::isfinite(legal.usualHighest))
        range += fmt::format(", usually to {:g}", legal.usualHighest);
    return range;
}

// What a person may set, and to what.
std::string listInputs(const Block& b, bool json)
{
    Json list = Json::array();
    TextTable table({"Input", "Type", "Default", "Unit", "Legal", "Meaning"});
    for (const ZelmCellInfo& cell : b.cells) {
        if (cell.kind != ZelmCellInfo::Kind::userInput)
            continue;
        const std::string legal = shownLegal(b, cell);
        list.push_back({{"cell", cell.name},
                        {"type", typeWord(cell.type)},
                        {"default", shownDefault(cell)},
                        {"unit", cell.unit},
                        {"legal", legal},
                        {"meaning", cell.meaning}});
        table.row({std::string(cell.name), std::string(typeWord(cell.type)), shownDefault(cell), std::string(cell.unit),
                   legal, std::string(cell.meaning)});
    }
    return json ? jsonText(list) : table.text();
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
    return table.text();
}

} // namespace

Action declareCells(Options& options)
{
    const std::string& blockName = options.required("block", "Block name");
    const bool& json = options.flag("--json", "Print JSON");
    const bool& inputs = options.flag("--inputs", "Only inputs, with the words and numbers that are legal");
    return [&blockName, &json, &inputs](Run& run) {
        run.out += inputs ? listInputs(block(blockName), json) : listCells(blockName, json);
        return kSuccess;
    };
}

} // namespace zelm::host

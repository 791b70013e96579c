#include "host/Calc.h"

#include "host/Block.h"
#include "host/Error.h"
#include "host/Json.h"
#include "host/Text.h"

#include <fmt/format.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <map>
#include <set>

namespace zelm::host {

std::string listBlocks(bool json)
{
    if (json) {
        Json list = Json::array();
        for (const Block& b : blocks())
            list.push_back(
                {{"block", b.name}, {"subsystem", b.subsystem}, {"title", b.title}, {"cells", b.cells.size()}});
        return list.dump(2) + "\n";
    }
    TextTable table({"Block", "Subsystem", "Cells", "What it is"});
    for (const Block& b : blocks())
        table.row(
            {std::string(b.name), std::string(b.subsystem), std::to_string(b.cells.size()), std::string(b.title)});
    return table.text();
}

std::string listCells(const std::string& blockName, bool json)
{
    const Block& b = block(blockName);
    const auto shownDefault = [](const ZelmCellInfo& cell) {
        if (cell.kind != ZelmCellInfo::Kind::userInput)
            return std::string();
        const std::string constant = constantDefault(cell);
        return constant.empty() && cell.defaultText != "\"\"" ? std::string("derived") : constant;
    };
    if (json) {
        Json list = Json::array();
        for (const ZelmCellInfo& cell : b.cells)
            list.push_back({{"cell", cell.name},
                            {"kind", kindWord(cell.kind)},
                            {"type", typeWord(cell.type)},
                            {"default", shownDefault(cell)},
                            {"unit", cell.unit},
                            {"meaning", cell.meaning}});
        return list.dump(2) + "\n";
    }
    TextTable table({"Cell", "Kind", "Type", "Default", "Unit", "Meaning"});
    for (const ZelmCellInfo& cell : b.cells)
        table.row({std::string(cell.name), std::string(kindWord(cell.kind)), std::string(typeWord(cell.type)),
                   shownDefault(cell), std::string(cell.unit), std::string(cell.meaning)});
    return table.text();
}

std::string calc(const std::string& blockName, const std::vector<std::string>& assignments, bool bits, bool json)
{
    const Block& b = block(blockName);
    const auto instance = b.create();
    std::set<std::string_view> given;
    for (const std::string& assignment : assignments) {
        const std::size_t equals = assignment.find('=');
        if (equals == std::string::npos)
            throw Error(fmt::format("\"{}\" is not of the form CELL=VALUE", assignment));
        const ZelmCellInfo& cell = b.input(assignment.substr(0, equals));
        instance->set(cell, parseValue(cell, assignment.substr(equals + 1)));
        given.insert(cell.name);
    }
    b.load();
    const LookUpMisses misses;
    instance->calculate();

    const auto origin = [&](const ZelmCellInfo& cell, const Value& value) -> std::string {
        if (cell.kind != ZelmCellInfo::Kind::userInput)
            return "";
        return given.contains(cell.name) ? "given" : value.index() == 0 ? "" : "default";
    };
    if (json) {
        Json list = Json::array();
        for (const ZelmCellInfo& cell : b.cells) {
            const Value value = instance->get(cell);
            Json entry{{"cell", cell.name}, {"kind", kindWord(cell.kind)}, {"unit", cell.unit}};
            addValue(entry, "value", value);
            if (const float* real = std::get_if<float>(&value); real && bits)
                entry["bits"] = fmt::format("{:08x}", std::bit_cast<std::uint32_t>(*real));
            if (const std::string from = origin(cell, value); !from.empty())
                entry["origin"] = from;
            list.push_back(std::move(entry));
        }
        return list.dump(2) + "\n";
    }
    TextTable table({"Cell", "Value", "Unit", "Kind", "Origin"});
    for (const ZelmCellInfo& cell : b.cells) {
        const Value value = instance->get(cell);
        const float* real = std::get_if<float>(&value);
        table.row({std::string(cell.name),
                   real && bits ? fmt::format("{:08x}", std::bit_cast<std::uint32_t>(*real)) : valueText(value),
                   std::string(cell.unit), std::string(kindWord(cell.kind)), origin(cell, value)});
    }
    std::string text = table.text();
    for (const MissingRow& row : b.missingRows(misses))
        text += fmt::format("note: {} has no row {} in {}\n", b.dataFile(), row.key, row.table);
    return text;
}

} // namespace zelm::host

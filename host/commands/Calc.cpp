#include "host/base/Error.h"
#include "host/base/Json.h"
#include "host/base/Terminal.h"
#include "host/base/Text.h"
#include "host/blocks/Legal.h"
#include "host/blocks/ValueJson.h"
#include "host/commands/Command.h"

#include <fmt/format.h>

#include <bit>
#include <cstdint>
#include <set>

namespace zelm::host {

namespace {

using Given = std::set<std::string_view>;

Given setInputs(Instance& instance, const Block& block, const std::vector<std::string>& assignments)
{
    Given given;
    for (const std::string& assignment : assignments) {
        const std::size_t equals = assignment.find('=');
        if (equals == std::string::npos)
            throw Error(fmt::format("\"{}\" is not of the form CELL=VALUE", abbreviated(assignment)));
        const ZelmCellInfo& cell = block.input(assignment.substr(0, equals));
        const Value value = parseValue(cell, assignment.substr(equals + 1));
        if (!given.insert(cell.name).second)
            throw Error(fmt::format("{} is given twice", cell.name));
        const auto doubt = doubtOf(block, cell, value);
        instance.set(cell, value);
        if (doubt)
            complain("warning: " + *doubt);
    }
    return given;
}

std::string origin(const ZelmCellInfo& cell, const Value& value, const Given& given)
{
    if (cell.kind != ZelmCellInfo::Kind::userInput)
        return "";
    return given.contains(cell.name) ? "given" : value.index() == 0 ? "" : "default";
}

// A float's binary32 pattern; empty for other values.
std::string bitsOf(const Value& value)
{
    const float* real = std::get_if<float>(&value);
    return real ? fmt::format("{:08x}", std::bit_cast<std::uint32_t>(*real)) : std::string();
}

std::string asJson(const Block& block, const Instance& instance, const Given& given, bool bits)
{
    Json list = Json::array();
    for (const ZelmCellInfo& cell : block.cells) {
        const Value value = instance.get(cell);
        Json entry{{"cell", cell.name}, {"kind", kindWord(cell.kind)}, {"unit", cell.unit}};
        addValue(entry, "value", value);
        if (const std::string pattern = bitsOf(value); bits && !pattern.empty())
            entry["bits"] = pattern;
        if (const std::string from = origin(cell, value, given); !from.empty())
            entry["origin"] = from;
        list.push_back(std::move(entry));
    }
    return jsonText({{"format", kJsonFormat}, {"block", block.name}, {"cells", std::move(list)}});
}

std::string asTable(const Block& block, const Instance& instance, const Given& given, bool bits)
{
    TextTable table({"Cell", "Value", "Unit", "Kind", "Origin"});
    for (const ZelmCellInfo& cell : block.cells) {
        const Value value = instance.get(cell);
        const std::string pattern = bitsOf(value);
        table.row({std::string(cell.name), bits && !pattern.empty() ? pattern : shown(valueText(value)),
                   std::string(cell.unit), std::string(kindWord(cell.kind)), origin(cell, value, given)});
    }
    return table.text();
}

// All cells after one calculate with the given CELL=VALUE inputs; bits shows floats as their binary32 pattern.
std::string calc(const std::string& blockName, const std::vector<std::string>& assignments, bool bits, bool json)
{
    const Block& b = block(blockName);
    const auto instance = b.create();
    const Given given = setInputs(*instance, b, assignments);
    b.load();
    const LookUpMisses misses;
    instance->calculate();
    if (json)
        return asJson(b, *instance, given, bits);
    std::string text = asTable(b, *instance, given, bits);
    for (const MissingRow& row : b.missingRows(misses))
        text += fmt::format("note: {} has no row {} in {}\n", b.dataFile(), row.key, row.table);
    return text;
}

} // namespace

Action declareCalc(Options& options)
{
    const std::string& blockName = options.required("block", "Block name");
    const std::vector<std::string>& assignments = options.list("inputs", "Inputs as CELL=VALUE");
    const bool& bits = options.flag("--bits", "Print floats as their binary32 bits");
    const bool& json = options.flag("--json", "Print JSON");
    return [&](Run& run) {
        run.out += calc(blockName, assignments, bits, json);
        return kSuccess;
    };
}

} // namespace zelm::host

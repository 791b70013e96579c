#include "host/Schema.h"

#include "host/Design.h"
#include "host/Error.h"
#include "host/Json.h"
#include "host/LegalWords.h"
#include "host/Running.h"

#include <fmt/format.h>

#include <charconv>
#include <filesystem>
#include <fstream>

namespace zelm::host {

namespace {

using Type = ZelmCellInfo::Type;

Json numberSchema(const char* description, double least, double most)
{
    return {{"type", "number"}, {"description", description}, {"minimum", least}, {"maximum", most}};
}

Json textSchema(const char* description)
{
    return {{"type", "string"}, {"description", description}};
}

Json objectSchema(Json properties, Json required = Json::array())
{
    Json schema{{"type", "object"}, {"additionalProperties", false}, {"properties", std::move(properties)}};
    if (!required.empty())
        schema["required"] = std::move(required);
    return schema;
}

Json inputSchema(const Block& block, const ZelmCellInfo& cell)
{
    std::string description(cell.meaning);
    if (!cell.unit.empty())
        description += fmt::format(" [{}]", cell.unit);
    Json schema{{"type", cell.type == Type::integer ? "integer"
                         : cell.type == Type::real  ? "number"
                                                    : "string"},
                {"description", description}};
    const std::string text = constantDefault(cell);
    if (cell.type == Type::text) {
        if (cell.defaultText.starts_with('"'))
            schema["default"] = text;
    } else if (!text.empty()) {
        schema["default"] = cell.type == Type::integer ? Json(std::stoi(text)) : Json(std::stod(text));
    }
    // The formulas take any word, and give an unknown one no power: editors propose the known ones.
    const std::vector<std::string> words = legalWords(block, cell);
    if (!words.empty() && cell.type == Type::text)
        schema["examples"] = words;
    return schema;
}

Json groupSchema(const Block& block)
{
    Json inputs = Json::object();
    for (const Block* reached : inputBlocks(block)) {
        for (const ZelmCellInfo& cell : reached->cells) {
            if (cell.kind == ZelmCellInfo::Kind::userInput && !inputs.contains(std::string(cell.name)))
                inputs[std::string(cell.name)] = inputSchema(*reached, cell);
        }
    }
    Json schema = objectSchema({{"block", {{"const", block.name}, {"description", block.title}}},
                                {"name", textSchema("what the design calls this group")},
                                {"count",
                                 {{"type", "integer"},
                                  {"description", "like instances"},
                                  {"minimum", 0},
                                  {"maximum", 1000000},
                                  {"default", 1}}},
                                {"inputs", objectSchema(std::move(inputs))}},
                               {"block"});
    schema["title"] = block.title;
    return schema;
}

std::string markdownCell(std::string_view text)
{
    std::string escaped;
    for (const char c : text)
        escaped += c == '|' ? "\\|" : std::string(1, c);
    return escaped;
}

} // namespace

Json designSchema()
{
    constexpr double coldest = -273.0;
    constexpr double hottest = 1000.0;
    constexpr double mostAmperes = 1e5;
    Json volts = Json::object();
    Json amperes = Json::object();
    Json regulators = Json::object();
    for (const std::string& rail : railNames()) {
        volts[rail] = numberSchema("volts", 0.0, 100.0);
        amperes[rail] = numberSchema("amperes", 0.0, mostAmperes);
        regulators[rail] = objectSchema({{"maxCurrent", numberSchema("amperes", 0.0, mostAmperes)}}, {"maxCurrent"});
    }
    Json staticInputs = Json::object();
    for (const ZelmCellInfo& cell : block("Static").cells) {
        if (cell.kind == ZelmCellInfo::Kind::userInput)
            staticInputs[std::string(cell.name)] = inputSchema(block("Static"), cell);
    }
    Json deviceFields{{"part", textSchema("orderable part or device name; zelm parts lists them")},
                      {"family", textSchema("the series, if it is to be checked")}};
    for (const auto& [cell, place] : ownFields()) {
        constexpr std::string_view device = "device.";
        if (place.starts_with(device) && place != "device.part")
            deviceFields[std::string(place.substr(device.size()))] = staticInputs[std::string(cell)];
        staticInputs.erase(std::string(cell));
    }

    const auto temperature = [](const char* what) { return numberSchema(what, coldest, hottest); };
    const Json theta = numberSchema("from the junction to the air, degrees per watt", 0.0, 1000.0);
    const Json cooling{
        {"type", "array"},
        {"description", "airflow and heat sink cases; the first is the design's, the others are compared"},
        {"minItems", 1},
        {"items",
         objectSchema({{"name", textSchema("what the report calls this case")}, {"thetaJA", theta}}, {"thetaJA"})}};

    Json groups = Json::array();
    Json names = Json::array();
    for (const Block& block : blocks()) {
        if (block.name == "Static")
            continue;
        names.push_back(block.name);
        groups.push_back(
            {{"if", {{"properties", {{"block", {{"const", block.name}}}}}}}, {"then", groupSchema(block)}});
    }

    Json fields{{"$schema", textSchema("this schema, for editors")},
                {"name", textSchema("of the design")},
                {"description", textSchema("for people")}};
    fields["device"] = objectSchema(deviceFields, {"part"});
    fields["environment"] =
        objectSchema({{"junctionTemperature", temperature("given directly, degrees Celsius")},
                      {"ambientTemperature", temperature("from which the junction's is found, degrees Celsius")},
                      {"thetaJA", theta},
                      {"cooling", cooling},
                      {"junctionLimit", temperature("what the junction may reach, degrees Celsius")}});
    fields["rails"] = objectSchema(volts);
    fields["regulators"] = objectSchema(regulators);
    fields["budgets"] = objectSchema({{"totalPower", numberSchema("watts", 0.0, mostAmperes)},
                                      {"junctionTemperature", temperature("degrees Celsius")},
                                      {"rails", objectSchema(amperes)}});
    fields["static"] = objectSchema(staticInputs);
    const Json group{
        {"type", "object"}, {"required", {"block"}}, {"properties", {{"block", {{"enum", names}}}}}, {"allOf", groups}};
    fields["groups"] = {{"type", "array"}, {"items", group}};

    Json schema{{"$schema", "https://json-schema.org/draft/2020-12/schema"}, {"title", "zelm design"}};
    schema.update(objectSchema(fields, {"groups"}));
    return schema;
}

void writeReference(const std::string& directory)
{
    std::filesystem::create_directories(directory);
    std::string index = "# Cells\n\nGenerated from the blocks' tables by `make docs`; do not edit.\n\n"
                        "| Block | What it is | Subsystem | Cells |\n|---|---|---|---|\n";
    for (const Block& block : blocks()) {
        index += fmt::format("| [{0}]({0}.md) | {1} | {2} | {3} |\n", block.name, block.title, block.subsystem,
                             block.cells.size());
        std::string page = fmt::format("# {}: {}\n\nGenerated by `make docs`; do not edit.\n\n## Cells\n\n"
                                       "| Cell | Kind | Type | Default | Unit | Meaning |\n|---|---|---|---|---|---|\n",
                                       block.name, block.title);
        for (const ZelmCellInfo& cell : block.cells)
            page +=
                fmt::format("| `{}` | {} | {} | {} | {} | {} |\n", cell.name, kindWord(cell.kind), typeWord(cell.type),
                            cell.defaultText.empty() ? "" : fmt::format("`{}`", markdownCell(cell.defaultText)),
                            cell.unit, markdownCell(cell.meaning));
        page += fmt::format("\n## Tables of {}\n\n| Group | Type | Keys | Unit | Meaning |\n|---|---|---|---|---|\n",
                            block.dataFile());
        for (const ZelmTableInfo& table : block.tables)
            page += fmt::format("| `{}` | {} | {} | {} | {} |\n", table.group,
                                table.type == "std::string" ? "string" : table.type, table.keys, table.unit,
                                markdownCell(table.meaning));
        std::ofstream file(fmt::format("{}/{}.md", directory, block.name));
        if (!(file << page))
            throw Error(fmt::format("{}: cannot be written", directory));
    }
    std::ofstream(directory + "/README.md") << index;
}

} // namespace zelm::host

#include "host/design/Schema.h"

#include "host/base/Json.h"
#include "host/base/Units.h"
#include "host/blocks/Legal.h"
#include "host/blocks/Rails.h"
#include "host/blocks/Uses.h"
#include "host/design/Design.h"
#include "host/design/Limits.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <cmath>

namespace zelm::host {

namespace {

using Type = ZelmCellInfo::Type;

// Of texts that stand for a number: with a unit that fits, or to be computed.
std::string patternOf(std::string_view unit)
{
    const std::vector<std::string> symbols = unitsLike(unit);
    return fmt::format(R"(^\s*(=.+|[-+]?(\d+\.?\d*|\.\d+)([eE][-+]?\d+)?\s*({}))\s*$)", fmt::join(symbols, "|"));
}

constexpr const char* kExpression = "^\\s*=.+$";
constexpr const char* kDistribution = "#/$defs/distribution";

Json numberSchema(const char* description, double least, double most, std::string_view unit)
{
    return {{"type", {"number", "string", "object"}},
            {"$ref", kDistribution},
            {"pattern", patternOf(unit)},
            {"description", description},
            {"minimum", least},
            {"maximum", most}};
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

void addDomain(Json& schema, const Block& block, const ZelmCellInfo& cell)
{
    if (const std::vector<std::string> words = legalWords(block, cell); !words.empty())
        schema["anyOf"] = {{{"enum", words}}, {{"type", "string"}, {"pattern", kExpression}}, {{"type", "object"}}};
    else if (const std::vector<int> numbers = legalNumbers(cell); !numbers.empty())
        schema["anyOf"] = {
            {{"enum", numbers}}, {{"type", "string"}, {"pattern", patternOf(cell.unit)}}, {{"type", "object"}}};
    else if (cell.legal.kind == zelm::Legal::Kind::number) {
        const auto end = [&](const char* name, double value) {
            if (std::isfinite(value))
                schema[name] = cell.type == Type::integer ? Json(static_cast<int>(value)) : Json(value);
        };
        // A rail that is used has a voltage.
        const bool aboveZero = cell.legal.lowest == zelm::legal::aboveZero.lowest || takesVolts(cell);
        end(aboveZero ? "exclusiveMinimum" : "minimum", aboveZero ? 0.0 : cell.legal.lowest);
        end("maximum", cell.legal.highest);
    }
}

Json inputSchema(const Block& block, const ZelmCellInfo& cell)
{
    std::string description(cell.meaning);
    if (!cell.unit.empty())
        description += fmt::format(" [{}]", cell.unit);
    Json schema = Json::object();
    if (cell.type == Type::text)
        schema["type"] = {"string", "object"};
    else
        schema["type"] = {cell.type == Type::integer ? "integer" : "number", "string", "object"};
    schema["$ref"] = kDistribution;
    schema["description"] = description;
    const std::string text = constantDefault(cell);
    if (cell.type == Type::text) {
        if (cell.defaultText.starts_with('"'))
            schema["default"] = text;
    } else if (!text.empty()) {
        schema["default"] = cell.type == Type::integer ? Json(std::stoi(text)) : Json(std::stod(text));
    }
    addDomain(schema, block, cell);
    if (cell.type != Type::text && !schema.contains("anyOf"))
        schema["pattern"] = patternOf(cell.unit);
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
                                 {{"type", {"integer", "string", "object"}},
                                  {"$ref", kDistribution},
                                  {"pattern", patternOf("")},
                                  {"description", "like instances"},
                                  {"minimum", 0},
                                  {"maximum", 1000000},
                                  {"default", 1}}},
                                {"in",
                                 {{"type", "string"},
                                  {"pattern", "^[^/]+(/[^/]+)*$"},
                                  {"description", "where it stands in the hierarchy: datapath/fir"}}},
                                {"inputs", objectSchema(std::move(inputs))}},
                               {"block"});
    if (takesClock(block.name))
        schema["properties"]["clock"] = textSchema("the name of the Clock group that clocks it");
    schema["title"] = block.title;
    return schema;
}

Json temperatureSchema(const char* description)
{
    return numberSchema(description, kColdest, kHottest, "C");
}

// An object of values by rail.
Json railsSchema(const Json& value)
{
    Json rails = Json::object();
    for (const std::string& rail : railNames())
        rails[rail] = value;
    return objectSchema(std::move(rails));
}

// The static power model's inputs have fields of their own in a device, or stand under "static".
std::pair<Json, Json> deviceAndStaticSchema()
{
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
    return {objectSchema(std::move(deviceFields), {"part"}), objectSchema(std::move(staticInputs))};
}

Json environmentSchema()
{
    const Json theta = numberSchema("from the junction to the air, degrees per watt", 0.0, kMostThetaJA, "C/W");
    const Json cooling{
        {"type", "array"},
        {"description", "airflow and heat sink cases; the first is the design's, the others are compared"},
        {"minItems", 1},
        {"items",
         objectSchema({{"name", textSchema("what the report calls this case")}, {"thetaJA", theta}}, {"thetaJA"})}};
    return objectSchema(
        {{"junctionTemperature", temperatureSchema("given directly, degrees Celsius")},
         {"ambientTemperature", temperatureSchema("from which the junction's is found, degrees Celsius")},
         {"thetaJA", theta},
         {"cooling", cooling},
         {"junctionLimit", temperatureSchema("what the junction may reach, degrees Celsius")}});
}

Json parametersSchema()
{
    return {{"type", "object"},
            {"description",
             "values by name, for expressions (\"= lanes / 4\"): numbers, texts with a unit, expressions of "
             "other parameters, words, distributions"},
            {"propertyNames", {{"pattern", "^[A-Za-z_][A-Za-z0-9_]*$"}}},
            {"additionalProperties", {{"type", {"number", "string", "object"}}, {"$ref", kDistribution}}}};
}

Json includeSchema()
{
    const Json file = textSchema("a file with groups and parameters, found from this file's folder");
    return {{"type", "array"},
            {"description", "files whose groups and parameters join this design's"},
            {"items",
             {{"anyOf",
               {file, objectSchema({{"file", file},
                                    {"prefix", textSchema("what the names of its groups begin with; of its parameters "
                                                          "too, with _ for what names can't have")}},
                                   {"file"})}}}}};
}

// What may stand for a number or word that isn't known for sure. Says nothing of what is no object.
Json distributionSchema()
{
    const Json number{{"type", {"number", "string"}}};
    const auto forms = [](std::initializer_list<const char*> fields) { return Json{{"required", fields}}; };
    return {{"description", "how likely a value is: uniform, triangular, normal (cut at low and high), or one of some"},
            {"properties",
             {{"low", number},
              {"mode", number},
              {"high", number},
              {"mean", number},
              {"sd", number},
              {"values", {{"type", "array"}, {"items", number}, {"minItems", 1}}},
              {"weights", {{"type", "array"}, {"items", {{"type", "number"}, {"minimum", 0}}}}}}},
            {"additionalProperties", false},
            {"anyOf", {forms({"low", "high"}), forms({"mean", "sd"}), forms({"values"})}}};
}

Json groupsSchema()
{
    Json groups = Json::array();
    Json names = Json::array();
    for (const Block& block : blocks()) {
        if (block.name == "Static" || block.name == "Parts")
            continue;
        names.push_back(block.name);
        groups.push_back(
            {{"if", {{"properties", {{"block", {{"const", block.name}}}}}}}, {"then", groupSchema(block)}});
    }
    const Json group{
        {"type", "object"}, {"required", {"block"}}, {"properties", {{"block", {{"enum", names}}}}}, {"allOf", groups}};
    return {{"type", "array"}, {"items", group}};
}

Json aboveZeroSchema(const char* description, double most, std::string_view unit)
{
    Json schema = numberSchema(description, 0.0, most, unit);
    schema.erase("minimum");
    schema["exclusiveMinimum"] = 0.0;
    return schema;
}

Json suppliesSchema(const Json& amperes, const Json& volts)
{
    const Json share = aboveZeroSchema("output power over input power", 1.0, "");
    const Json point{{"type", "array"}, {"prefixItems", {amperes, share}}, {"minItems", 2}, {"maxItems", 2}};
    const Json efficiency{{"description", "output power over input power; or points of load in amperes and share"},
                          {"oneOf", {share, {{"type", "array"}, {"items", point}, {"minItems", 1}}}}};
    const Json rails{{"type", "array"}, {"items", {{"enum", railNames()}}}, {"description", "those that it feeds"}};
    const Json supply =
        objectSchema({{"rails", rails},
                      {"from", textSchema("what feeds it: another supply, or a source named by its volts, 12V")},
                      {"maxCurrent", amperes},
                      {"volts", volts},
                      {"efficiency", efficiency}});
    return {{"type", "object"},
            {"description", "what feeds the rails, by name"},
            {"maxProperties", kMostSupplies},
            {"additionalProperties", supply}};
}

Json modesSchema()
{
    const Json set{{"type", "object"},
                   {"description", "values by path, groups[NAME].inputs.CELL; in groups, rails, static, parameters"}};
    const Json mode = objectSchema({{"name", textSchema("of the mode")},
                                    {"for", aboveZeroSchema("how long it lasts, seconds", kMostSeconds, "s")},
                                    {"set", set}},
                                   {"name", "for"});
    return {{"type", "array"},
            {"description", "what the device does one after the other, over and over"},
            {"minItems", 1},
            {"maxItems", kMostModes},
            {"items", mode}};
}

Json thermalSchema()
{
    const Json stage = objectSchema({{"r", aboveZeroSchema("degrees per watt", kMostThetaJA, "C/W")},
                                     {"tau", aboveZeroSchema("time constant, seconds", kMostSeconds, "s")}},
                                    {"r", "tau"});
    const Json stages{{"type", "array"}, {"minItems", 1}, {"maxItems", kMostStages}, {"items", stage}};
    Json thermal = objectSchema({{"stages", stages}}, {"stages"});
    thermal["description"] = "a Foster network from the junction to the air, in place of thetaJA";
    return thermal;
}

Json sequenceSchema()
{
    const Json rail{{"enum", railNames()}};
    const Json together{{"type", "array"}, {"items", rail}, {"minItems", 1}};
    return {{"type", "array"},
            {"description", "the order in which rails power up; a list of rails powers up together"},
            {"minItems", 1},
            {"items", {{"oneOf", {rail, together}}}}};
}

} // namespace

Json designSchema()
{
    const Json amperes = numberSchema("amperes", 0.0, kMostAmperes, "A");
    const Json volts{{"type", {"number", "string", "object"}},
                     {"$ref", kDistribution},
                     {"pattern", patternOf("V")},
                     {"description", "volts"},
                     {"exclusiveMinimum", 0.0},
                     {"maximum", kMostVolts}};
    const auto [device, staticInputs] = deviceAndStaticSchema();
    Json fields{{"$schema", textSchema("this schema, for editors")},
                {"name", textSchema("of the design")},
                {"description", textSchema("for people")}};
    fields["include"] = includeSchema();
    fields["parameters"] = parametersSchema();
    fields["device"] = device;
    fields["environment"] = environmentSchema();
    fields["rails"] = railsSchema(volts);
    fields["regulators"] = railsSchema(objectSchema({{"maxCurrent", amperes}}, {"maxCurrent"}));
    fields["supplies"] = suppliesSchema(amperes, volts);
    fields["sequence"] = sequenceSchema();
    fields["modes"] = modesSchema();
    fields["thermal"] = thermalSchema();
    fields["battery"] = objectSchema({{"energy", aboveZeroSchema("watt-hours", kMostWattHours, "Wh")}}, {"energy"});
    const Json judgedAt{{"type", "string"},
                        {"anyOf", {{{"enum", {"TYP", "MAX"}}}, {{"pattern", kExpression}}}},
                        {"description", "the process side on which budgets and regulators count; the worse if unsaid"}};
    fields["budgets"] = objectSchema({{"totalPower", numberSchema("watts", 0.0, kMostAmperes, "W")},
                                      {"junctionTemperature", temperatureSchema("degrees Celsius")},
                                      {"rails", railsSchema(amperes)},
                                      {"judgedAt", judgedAt}});
    fields["static"] = staticInputs;
    fields["groups"] = groupsSchema();

    Json schema{{"$schema", "https://json-schema.org/draft/2020-12/schema"}, {"title", "zelm design"}};
    schema.update(objectSchema(fields, {"groups"}));
    schema["$defs"]["distribution"] = distributionSchema();
    return schema;
}

} // namespace zelm::host

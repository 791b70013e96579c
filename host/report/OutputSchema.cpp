#include "host/report/OutputSchema.h"

#include "host/base/Json.h"

#include <string>
#include <utility>
#include <vector>

namespace zelm::host {

namespace {

Json ofType(const char* type)
{
    return {{"type", type}};
}

// A number, or null with the reason in a field beside it.
Json amount()
{
    return {{"type", {"number", "null"}}};
}

Json listOf(Json items)
{
    return {{"type", "array"}, {"items", std::move(items)}};
}

using Properties = std::vector<std::pair<const char*, Json>>;

// All of the first are there, the others may be. What is null has a field of its name with "Reason" behind it.
Json object(const Properties& always, const Properties& sometimes = {})
{
    Json properties = Json::object();
    Json required = Json::array();
    for (const auto& [name, schema] : always) {
        properties[name] = schema;
        required.push_back(name);
    }
    for (const auto& [name, schema] : sometimes)
        properties[name] = schema;
    return {{"type", "object"},
            {"properties", std::move(properties)},
            {"required", std::move(required)},
            {"patternProperties", {{"Reason$", ofType("string")}}},
            {"additionalProperties", false}};
}

// What a command prints: the version of the form, which changes when a field's name or meaning does, and its fields.
Json output(Properties always, const Properties& sometimes = {})
{
    always.insert(always.begin(), {"format", {{"const", kJsonFormat}}});
    return object(always, sometimes);
}

Json text()
{
    return ofType("string");
}

Json whole()
{
    return ofType("integer");
}

Json number()
{
    return ofType("number");
}

Json value(bool orTruth = false)
{
    return {{"type", orTruth ? Json{"boolean", "number", "string", "null"} : Json{"number", "string", "null"}}};
}

Json point()
{
    return object({{"converged", ofType("boolean")},
                   {"junctionTemperature", amount()},
                   {"watts", amount()},
                   {"loopGain", amount()},
                   {"words", text()}});
}

Json uncertainties()
{
    return listOf(object({{"relative", number()}, {"words", text()}}, {{"kind", text()}, {"rail", text()}}));
}

Json group()
{
    const Json part = object({{"cell", text()}, {"rail", text()}, {"watts", amount()}, {"amperes", amount()}});
    const Json input = object({{"cell", text()}, {"unit", text()}, {"value", value()}, {"origin", text()}});
    return object({{"name", text()},
                   {"block", text()},
                   {"title", text()},
                   {"count", whole()},
                   {"watts", amount()},
                   {"offchipWatts", amount()},
                   {"onlyCarries", ofType("boolean")},
                   {"uncertainty", uncertainties()},
                   {"outputs", listOf(part)},
                   {"inputs", listOf(input)}},
                  {{"in", text()}, {"clock", text()}});
}

Json rail()
{
    return object({{"rail", text()},
                   {"volts", amount()},
                   {"dynamicAmperes", amount()},
                   {"staticAmperes", amount()},
                   {"totalAmperes", amount()},
                   {"dynamicWatts", amount()},
                   {"staticWatts", amount()},
                   {"watts", amount()},
                   {"powerUpAmperes", amount()}},
                  {{"staticCurrentInside", text()}});
}

Json supplies()
{
    const Json supply = object({{"name", text()},
                                {"from", text()},
                                {"volts", amount()},
                                {"loadAmperes", amount()},
                                {"powerUpAmperes", amount()},
                                {"powerUpRails", listOf(text())},
                                {"outputWatts", amount()},
                                {"efficiency", amount()},
                                {"lossWatts", amount()},
                                {"inputWatts", amount()},
                                {"rails", listOf(object({{"rail", text()}, {"watts", amount()}}))}},
                               {{"maxAmperes", amount()}, {"marginAmperes", amount()}});
    return object({{"inputWatts", amount()},
                   {"unfedRails", listOf(text())},
                   {"unfedWatts", amount()},
                   {"supplies", listOf(supply)}});
}

Json side()
{
    return object({{"process", text()},
                   {"junctionTemperature", amount()},
                   {"staticWatts", amount()},
                   {"totalWatts", amount()},
                   {"rails", listOf(rail())},
                   {"subsystems", listOf(object({{"cell", text()}, {"watts", amount()}}))},
                   {"curve", listOf(object({{"junctionTemperature", amount()}, {"watts", amount()}}))}},
                  {{"thermal", point()},
                   {"highestAmbientTemperature", amount()},
                   {"largestThetaJA", amount()},
                   {"supplies", supplies()},
                   {"startUp", listOf(object({{"seconds", amount()},
                                              {"lowestJunctionTemperature", amount()},
                                              {"highestJunctionTemperature", amount()}}))}});
}

Json mode()
{
    const Json modeSide = object({{"process", text()},
                                  {"staticWatts", amount()},
                                  {"watts", amount()},
                                  {"peakWatts", amount()},
                                  {"inputWatts", amount()},
                                  {"joules", amount()},
                                  {"lowestJunctionTemperature", amount()},
                                  {"highestJunctionTemperature", amount()}});
    return object({{"name", text()},
                   {"seconds", amount()},
                   {"dynamicWatts", amount()},
                   {"groups", listOf(object({{"name", text()}, {"watts", amount()}}))},
                   {"sides", listOf(modeSide)}});
}

Json periodSide()
{
    const Json moment =
        object({{"seconds", amount()}, {"mode", text()}, {"junctionTemperature", amount()}, {"watts", amount()}},
               {{"inputWatts", amount()}});
    const Json ofRail = object({{"rail", text()},
                                {"watts", amount()},
                                {"peakWatts", amount()},
                                {"peakAmperes", amount()},
                                {"peakMode", text()}});
    const Json ofSupply = object({{"name", text()},
                                  {"inputWatts", amount()},
                                  {"peakInputWatts", amount()},
                                  {"peakAmperes", amount()},
                                  {"peakMode", text()},
                                  {"powerUpAmperes", amount()}},
                                 {{"maxAmperes", amount()}});
    return object({{"process", text()},
                   {"settles", ofType("boolean")},
                   {"words", text()},
                   {"settledJunctionTemperature", amount()},
                   {"lowest", moment},
                   {"highest", moment},
                   {"watts", amount()},
                   {"peakWatts", amount()},
                   {"peakMode", text()},
                   {"joules", amount()},
                   {"rails", listOf(ofRail)},
                   {"supplies", listOf(ofSupply)},
                   {"moments", listOf(moment)}},
                  {{"inputWatts", amount()}, {"peakInputWatts", amount()}, {"batteryHours", amount()}});
}

Json budget()
{
    return object({{"name", text()},
                   {"unit", text()},
                   {"broken", ofType("boolean")},
                   {"limit", amount()},
                   {"actual", amount()},
                   {"verdict", text()},
                   {"words", text()}},
                  {{"otherActual", amount()}});
}

Json subtotal(const char* by)
{
    return object({{by, text()}, {"groups", whole()}, {"watts", amount()}},
                  {{"amperes", amount()}, {"offchipWatts", amount()}});
}

Json estimateOutput()
{
    const Json use = object({{"resource", text()}, {"used", number()}, {"available", number()}});
    const Json cooling = object({{"name", text()}, {"thetaJA", number()}, {"point", point()}});
    return output(
        {{"name", text()},
         {"version", text()},
         {"totalWatts", amount()},
         {"dynamicWatts", amount()},
         {"staticWatts", amount()},
         {"offchipWatts", amount()},
         {"groups", listOf(group())},
         {"hierarchy", listOf(subtotal("in"))},
         {"sides", listOf(side())},
         {"cooling", listOf(cooling)},
         {"utilisation", listOf(use)},
         {"regulators", listOf(object({{"rail", text()}, {"maxAmperes", number()}, {"marginAmperes", amount()}}))},
         {"budgets", listOf(budget())},
         {"carried", listOf(object({{"from", text()}, {"to", text()}, {"value", text()}}))},
         {"warnings", listOf(text())},
         {"dataFiles", listOf(object({{"name", text()}, {"sha256", text()}}))}},
        {{"part", text()},
         {"remarks", listOf(text())},
         {"ambientTemperature", amount()},
         {"staticUncertainty", uncertainties()},
         {"period", object({{"seconds", amount()}, {"modes", listOf(mode())}, {"sides", listOf(periodSide())}})}});
}

Json subtotalsOutput()
{
    const Json sums{{"anyOf", {subtotal("in"), subtotal("block"), subtotal("rail"), subtotal("clock")}}};
    return output({{"name", text()},
                   {"by", {{"enum", {"in", "block", "rail", "clock"}}}},
                   {"dynamicWatts", amount()},
                   {"subtotals", listOf(sums)}});
}

Json sweepOutput()
{
    const Json sweepSide = object({{"process", text()},
                                   {"junctionTemperature", amount()},
                                   {"staticWatts", amount()},
                                   {"totalWatts", amount()},
                                   {"settles", ofType("boolean")}});
    const Json usual = object({{"settings", ofType("object")},
                               {"dynamicWatts", amount()},
                               {"offchipWatts", amount()},
                               {"sides", listOf(sweepSide)},
                               {"budgetsBroken", listOf(text())},
                               {"warnings", listOf(text())}});
    const Json columns =
        object({{"settings", ofType("object")}, {"quantities", ofType("object")}, {"warnings", listOf(text())}});
    const Json crossing = object({{"path", text()},
                                  {"unit", text()},
                                  {"value", amount()},
                                  {"from", number()},
                                  {"to", number()},
                                  {"settings", ofType("object")},
                                  {"budget", text()},
                                  {"process", text()},
                                  {"limit", number()},
                                  {"limitUnit", text()},
                                  {"kept", {{"enum", {"below", "above"}}}}});
    return output({{"points", listOf({{"anyOf", {usual, columns}}})}, {"crossings", listOf(crossing)}},
                  {{"crossingsLeftOut", whole()}});
}

Json activityOutput()
{
    const Json ofGroup = object({{"name", text()},
                                 {"block", text()},
                                 {"scope", text()},
                                 {"clock", text()},
                                 {"cycles", amount()},
                                 {"nets", whole()},
                                 {"bits", number()},
                                 {"toggles", number()},
                                 {"inputs", ofType("object")},
                                 {"kept", listOf(text())}},
                                {{"note", text()}});
    return output({{"scope", text()},
                   {"seconds", number()},
                   {"nets", whole()},
                   {"annotatedNets", whole()},
                   {"netShare", number()},
                   {"groups", listOf(ofGroup)}});
}

// A node of an explanation, whose operands are others.
Json explainedNode()
{
    const Json row = object({{"table", text()}, {"keys", listOf(text())}, {"value", value(true)}},
                            {{"unit", text()}, {"file", text()}, {"line", whole()}});
    const Json place = object({{"file", text()}, {"line", whole()}});
    const Json piece = object({{"file", text()}, {"line", whole()}, {"text", text()}});
    const Json operands = listOf({{"$ref", "#/$defs/explainedNode"}});
    return object({{"value", value()}, {"unit", text()}, {"meaning", text()}, {"operands", operands}},
                  {{"quantity", text()},
                   {"cell", text()},
                   {"group", text()},
                   {"block", text()},
                   {"process", text()},
                   {"formula", text()},
                   {"source", place},
                   {"call", text()},
                   {"member", listOf(piece)},
                   {"term", whole()},
                   {"lookUps", listOf(row)},
                   {"origin", object({{"kind", text()}}, {{"from", text()}, {"file", text()}, {"line", whole()}})},
                   {"repeats", ofType("boolean")},
                   {"cut", ofType("boolean")}});
}

// The node that was asked for, with what stands once for all.
Json explainOutput()
{
    Json node = explainedNode();
    const Json piece = object({{"file", text()}, {"line", whole()}, {"text", text()}});
    node["properties"]["format"] = {{"const", kJsonFormat}};
    node["properties"]["name"] = text();
    node["properties"]["sources"] = listOf(piece);
    for (const char* name : {"format", "name", "lookUps", "sources"})
        node["required"].push_back(name);
    return node;
}

Json solveOutput()
{
    const Json crossing = object({{"value", number()},
                                  {"quantity", text()},
                                  {"limit", number()},
                                  {"unit", text()},
                                  {"amount", amount()},
                                  {"kept", {{"enum", {"below", "above"}}}}});
    return output({{"name", text()},
                   {"path", text()},
                   {"unit", text()},
                   {"whole", ofType("boolean")},
                   {"low", number()},
                   {"high", number()},
                   {"crossings", listOf(crossing)},
                   {"decides", {{"type", {"string", "null"}}}},
                   {"atLow", ofType("object")},
                   {"atHigh", ofType("object")},
                   {"kept", listOf(object({{"from", number()}, {"to", number()}}))}},
                  {{"value", number()}});
}

Json sensitivityOutput()
{
    const Json row = object({{"path", text()},
                             {"value", value()},
                             {"unit", text()},
                             {"origin", text()},
                             {"minus", amount()},
                             {"plus", amount()},
                             {"minusTo", value()},
                             {"plusTo", value()},
                             {"words", listOf(object({{"word", text()}, {"change", amount()}}))},
                             {"elasticity", amount()},
                             {"overSpan", amount()},
                             {"agrees", ofType("boolean")}});
    return output({{"name", text()},
                   {"quantity", text()},
                   {"unit", text()},
                   {"nominal", number()},
                   {"span", number()},
                   {"rows", listOf(row)},
                   {"findOutNext", listOf(text())}});
}

Json diffOutput()
{
    const Json word{{"type", {"string", "null"}}};
    const Json input = object({{"input", text()}, {"before", word}, {"after", word}});
    const Json part = object({{"group", text()}, {"input", text()}, {"change", number()}});
    const Json quantity = object({{"quantity", text()},
                                  {"unit", text()},
                                  {"before", amount()},
                                  {"after", amount()},
                                  {"change", amount()},
                                  {"parts", listOf(part)}});
    const Json changed = object({{"group", text()},
                                 {"what", {{"enum", {"added", "removed", "renamed", "changed"}}}},
                                 {"wattsBefore", amount()},
                                 {"wattsAfter", amount()},
                                 {"inputs", listOf(input)}},
                                {{"was", text()}});
    return output({{"before", text()},
                   {"after", text()},
                   {"quantities", listOf(quantity)},
                   {"groups", listOf(changed)},
                   {"settings", listOf(input)}});
}

Properties bandFields()
{
    Properties fields;
    for (const char* name : {"mean", "sd", "p5", "p50", "p95", "meanError", "p5Error", "p50Error", "p95Error"})
        fields.emplace_back(name, amount());
    fields.emplace_back("runsAway", whole());
    return fields;
}

Json sampleOutput()
{
    Properties quantity = bandFields();
    quantity.insert(quantity.begin(), {{"quantity", text()}, {"unit", text()}});
    Properties ofSide = bandFields();
    ofSide.insert(ofSide.begin(), {{"process", text()}, {"probabilityKept", number()}});
    const Json ofBudget = object({{"name", text()},
                                  {"limit", number()},
                                  {"unit", text()},
                                  {"probabilityKept", number()},
                                  {"sides", listOf(object(ofSide))}});
    return output({{"name", text()},
                   {"points", whole()},
                   {"seed", whole()},
                   {"method", {{"enum", {"sobol", "latin", "random"}}}},
                   {"distributions", listOf(object({{"path", text()}, {"distribution", text()}}))},
                   {"data", listOf(object({{"name", text()}, {"relative", number()}}))},
                   {"quantities", listOf(object(quantity))},
                   {"budgets", listOf(ofBudget)},
                   {"of", text()},
                   {"indices", listOf(object({{"path", text()}, {"first", number()}, {"total", number()}}))},
                   {"indexEstimates", whole()},
                   {"rankCorrelations", listOf(object({{"path", text()}, {"correlation", number()}}))},
                   {"error", amount()},
                   {"warnings", listOf(object({{"text", text()}, {"points", whole()}}))}});
}

Json fitOutput()
{
    const Json use = object({{"resource", text()}, {"used", number()}, {"available", number()}});
    const Json part = object({{"part", text()},
                              {"device", text()},
                              {"package", text()},
                              {"own", ofType("boolean")},
                              {"fits", ofType("boolean")},
                              {"short", listOf(text())},
                              {"shortages", listOf(use)},
                              {"totalWatts", ofType("object")},
                              {"staticWatts", ofType("object")},
                              {"junction", ofType("object")},
                              {"keeps", ofType("boolean")},
                              {"broken", listOf(text())},
                              {"warnings", listOf(text())}},
                             {{"why", text()}});
    return output({{"name", text()}, {"part", text()}, {"parts", listOf(part)}});
}

Json listOutputs()
{
    const Json cell = object({{"cell", text()},
                              {"kind", text()},
                              {"type", text()},
                              {"default", text()},
                              {"unit", text()},
                              {"meaning", text()}},
                             {{"legal", text()}, {"goesTo", text()}});
    const Json calculated = object({{"cell", text()}, {"kind", text()}, {"unit", text()}, {"value", value()}},
                                   {{"bits", text()}, {"origin", text()}});
    const Json block = object({{"block", text()}, {"subsystem", text()}, {"title", text()}, {"cells", whole()}});
    const Json part = object({{"device", text()},
                              {"family", text()},
                              {"coreVoltages", text()},
                              {"packages", ofType("object")},
                              {"resources", ofType("object")},
                              {"notModelled", listOf(text())}});
    const Json standard =
        object({{"bank", text()}, {"direction", text()}, {"standard", text()}, {"pins", whole()}, {"volts", amount()}});
    return {{"cells", output({{"block", text()}, {"cells", listOf(cell)}})},
            {"calc", output({{"block", text()}, {"cells", listOf(calculated)}})},
            {"blocks", output({{"blocks", listOf(block)}})},
            {"parts", output({{"parts", listOf(part)}})},
            {"standards", output({{"standards", listOf(standard)}})}};
}

} // namespace

Json outputSchema()
{
    Json outputs{{"estimate", estimateOutput()}, {"estimateBy", subtotalsOutput()}, {"sweep", sweepOutput()}};
    outputs.update({{"diff", diffOutput()},
                    {"explain", explainOutput()},
                    {"fit", fitOutput()},
                    {"importActivity", activityOutput()},
                    {"sample", sampleOutput()},
                    {"sensitivity", sensitivityOutput()},
                    {"solve", solveOutput()}});
    outputs.update(listOutputs());
    Json any = Json::array();
    for (const auto& [command, schema] : outputs.items())
        any.push_back({{"$ref", "#/$defs/" + command}});
    outputs["explainedNode"] = explainedNode();
    return {
        {"$schema", "https://json-schema.org/draft/2020-12/schema"},
        {"title", "what zelm prints with --json"},
        {"description", "one of the definitions, which have the names of the commands; estimateBy is estimate --by"},
        {"$defs", std::move(outputs)},
        {"anyOf", std::move(any)}};
}

} // namespace zelm::host

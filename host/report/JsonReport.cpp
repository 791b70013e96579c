#include "host/base/Json.h"
#include "host/blocks/DataFiles.h"
#include "host/blocks/Uncertainty.h"
#include "host/blocks/ValueJson.h"
#include "host/report/Report.h"
#include "host/report/SubtotalsReport.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <map>
#include <string_view>
#include <utility>
#include <variant>

namespace zelm::host {

namespace {

Json railJson(const RailResult& rail)
{
    Json json{{"rail", rail.name}};
    if (!rail.inside.empty())
        json["staticCurrentInside"] = rail.inside;
    addNumber(json, "volts", rail.volts);
    addNumber(json, "dynamicAmperes", rail.dynamicAmperes);
    addAmount(json, "staticAmperes", rail.staticAmperes);
    addAmount(json, "totalAmperes", rail.amperes());
    addNumber(json, "dynamicWatts", rail.dynamicWatts);
    addAmount(json, "staticWatts", rail.staticWatts);
    addAmount(json, "watts", rail.watts());
    addAmount(json, "powerUpAmperes", rail.powerUpAmperes);
    return json;
}

Json pointJson(const OperatingPoint& point)
{
    Json json{{"converged", point.converged}};
    addAmount(json, "junctionTemperature", point.junction);
    addAmount(json, "watts", point.power);
    addAmount(json, "loopGain", point.loopGain);
    json["words"] = point.words;
    return json;
}

// Room for so many fields: an object that grows copies all that it has.
void makeRoom(Json& object, std::size_t fields)
{
    object.get_ref<Json::object_t&>().reserve(fields);
}

template <class Range, class Each>
Json listOf(const Range& range, Each each)
{
    Json list = Json::array();
    list.get_ref<Json::array_t&>().reserve(range.size());
    for (const auto& element : range)
        list.push_back(each(element));
    return list;
}

Json supplyJson(const SupplyResult& supply)
{
    Json json{{"name", supply.name}, {"from", supply.from}};
    addNumber(json, "volts", supply.volts);
    addAmount(json, "loadAmperes", supply.loadAmperes);
    if (supply.maxAmperes) {
        addNumber(json, "maxAmperes", *supply.maxAmperes);
        addAmount(json, "marginAmperes", *supply.maxAmperes - supply.loadAmperes);
    }
    addAmount(json, "powerUpAmperes", supply.powerUpAmperes);
    json["powerUpRails"] = supply.powerUpRails;
    addAmount(json, "outputWatts", supply.outputWatts);
    addAmount(json, "efficiency", supply.efficiency);
    addAmount(json, "lossWatts", supply.lossWatts());
    addAmount(json, "inputWatts", supply.inputWatts);
    json["rails"] = Json::array();
    for (const auto& [rail, watts] : supply.rails) {
        Json entry{{"rail", rail}};
        addAmount(entry, "watts", watts);
        json["rails"].push_back(std::move(entry));
    }
    return json;
}

Json suppliesJson(const SupplyTree& tree)
{
    Json json;
    addAmount(json, "inputWatts", tree.inputWatts);
    json["unfedRails"] = tree.unfed;
    addAmount(json, "unfedWatts", tree.unfedWatts);
    json["supplies"] = Json::array();
    for (const SupplyResult& supply : tree.supplies)
        json["supplies"].push_back(supplyJson(supply));
    return json;
}

Json modeSideJson(const std::string& process, const ModeSide& side)
{
    Json json{{"process", process}};
    addAmount(json, "staticWatts", side.staticWatts);
    addAmount(json, "watts", side.watts);
    addAmount(json, "peakWatts", side.peakWatts);
    addAmount(json, "inputWatts", side.inputWatts);
    addAmount(json, "joules", side.joules);
    addAmount(json, "lowestJunctionTemperature", side.lowestJunction);
    addAmount(json, "highestJunctionTemperature", side.highestJunction);
    return json;
}

Json modeJson(const Estimate& estimate, const ModeResult& mode)
{
    Json json{{"name", mode.name}};
    addNumber(json, "seconds", mode.seconds);
    addNumber(json, "dynamicWatts", mode.dynamicWatts);
    json["groups"] = Json::array();
    for (std::size_t i = 0; i < mode.groupWatts.size(); ++i) {
        Json group{{"name", estimate.groups[i].name}};
        addNumber(group, "watts", mode.groupWatts[i]);
        json["groups"].push_back(std::move(group));
    }
    json["sides"] = Json::array();
    for (std::size_t i = 0; i < mode.sides.size(); ++i)
        json["sides"].push_back(modeSideJson(estimate.sides[i].process, mode.sides[i]));
    return json;
}

Json momentJson(const Estimate& estimate, const Moment& moment)
{
    Json json;
    addNumber(json, "seconds", moment.seconds);
    json["mode"] = estimate.period->modes[moment.mode].name;
    addAmount(json, "junctionTemperature", moment.junction);
    addAmount(json, "watts", moment.watts);
    if (estimate.side().supplies)
        addAmount(json, "inputWatts", moment.inputWatts);
    return json;
}

Json railPeriodJson(const RailPeriod& rail)
{
    Json json{{"rail", rail.rail}};
    addAmount(json, "watts", rail.watts);
    addAmount(json, "peakWatts", rail.peakWatts);
    addAmount(json, "peakAmperes", rail.peakAmperes);
    json["peakMode"] = rail.peakMode;
    return json;
}

Json supplyPeriodJson(const SupplyPeriod& supply)
{
    Json json{{"name", supply.name}};
    addAmount(json, "inputWatts", supply.inputWatts);
    addAmount(json, "peakInputWatts", supply.peakInputWatts);
    addAmount(json, "peakAmperes", supply.peakAmperes);
    json["peakMode"] = supply.peakMode;
    if (supply.maxAmperes)
        addNumber(json, "maxAmperes", *supply.maxAmperes);
    addAmount(json, "powerUpAmperes", supply.powerUpAmperes);
    return json;
}

Json periodSideJson(const Estimate& estimate, const PeriodSide& side)
{
    Json json{{"process", side.process}, {"settles", side.settles}, {"words", side.words}};
    addAmount(json, "settledJunctionTemperature", side.settledJunction);
    json["lowest"] = momentJson(estimate, side.lowest);
    json["highest"] = momentJson(estimate, side.highest);
    addAmount(json, "watts", side.watts);
    addAmount(json, "peakWatts", side.peakWatts);
    json["peakMode"] = side.peakMode;
    addAmount(json, "joules", side.joules);
    if (estimate.side().supplies) {
        addAmount(json, "inputWatts", side.inputWatts);
        addAmount(json, "peakInputWatts", side.peakInputWatts);
    }
    if (side.batteryHours)
        addAmount(json, "batteryHours", *side.batteryHours);
    json["rails"] = listOf(side.rails, railPeriodJson);
    json["supplies"] = listOf(side.supplies, supplyPeriodJson);
    json["moments"] = listOf(side.moments, [&](const Moment& moment) { return momentJson(estimate, moment); });
    return json;
}

Json periodJson(const Estimate& estimate)
{
    Json json;
    addNumber(json, "seconds", estimate.period->seconds);
    json["modes"] = listOf(estimate.period->modes, [&](const ModeResult& mode) { return modeJson(estimate, mode); });
    json["sides"] =
        listOf(estimate.period->sides, [&](const PeriodSide& side) { return periodSideJson(estimate, side); });
    return json;
}

Json startUpJson(const WarmingUp& stretch)
{
    Json json;
    addNumber(json, "seconds", stretch.seconds);
    addNumber(json, "lowestJunctionTemperature", stretch.lowestJunction);
    addNumber(json, "highestJunctionTemperature", stretch.highestJunction);
    return json;
}

Json sideJson(const Side& side)
{
    Json json{{"process", side.process}};
    makeRoom(json, 16);
    addAmount(json, "junctionTemperature", side.junction);
    addAmount(json, "staticWatts", side.staticWatts);
    addAmount(json, "totalWatts", side.totalWatts);
    if (side.thermal)
        json["thermal"] = pointJson(*side.thermal);
    if (side.highestAmbient)
        addNumber(json, "highestAmbientTemperature", *side.highestAmbient);
    if (side.largestThetaJA)
        addNumber(json, "largestThetaJA", *side.largestThetaJA);
    json["rails"] = Json::array();
    for (const RailResult& rail : side.rails)
        json["rails"].push_back(railJson(rail));
    if (side.supplies)
        json["supplies"] = suppliesJson(*side.supplies);
    if (!side.startUp.empty())
        json["startUp"] = listOf(side.startUp, startUpJson);
    json["subsystems"] = Json::array();
    for (const Subsystem& subsystem : side.subsystems) {
        Json entry{{"cell", subsystem.cell}};
        addAmount(entry, "watts", subsystem.watts);
        json["subsystems"].push_back(std::move(entry));
    }
    json["curve"] = listOf(side.curve, [](const std::pair<double, double>& point) {
        Json entry;
        addNumber(entry, "junctionTemperature", point.first);
        addNumber(entry, "watts", point.second);
        return entry;
    });
    return json;
}

using Uncertainties = std::map<std::string, std::vector<Uncertainty>, std::less<>>;

Json uncertaintyJson(const Uncertainties& known, std::string_view block)
{
    Json list = Json::array();
    if (const auto of = known.find(block); of != known.end()) {
        for (const Uncertainty& uncertainty : of->second) {
            Json entry = uncertainty.rail.empty() ? Json{{"kind", uncertainty.kind}} : Json{{"rail", uncertainty.rail}};
            entry["relative"] = uncertainty.relative;
            entry["words"] = uncertaintyWords(uncertainty);
            list.push_back(std::move(entry));
        }
    }
    return list;
}

// To the bit: -0 is written otherwise than 0.
bool sameNumber(double a, double b)
{
    return a == b && std::signbit(a) == std::signbit(b);
}

bool sameValue(const Value& a, const Value& b)
{
    const float* one = std::get_if<float>(&a);
    const float* other = std::get_if<float>(&b);
    return one && other ? sameNumber(static_cast<double>(*one), static_cast<double>(*other)) : a == b;
}

// Whether two groups are written the same way.
bool sameGroup(const GroupResult& a, const GroupResult& b)
{
    return a.name == b.name && a.block == b.block && a.count == b.count && a.onlyCarries == b.onlyCarries &&
           a.in == b.in && a.clock == b.clock && sameNumber(a.watts, b.watts) &&
           sameNumber(a.offchipWatts, b.offchipWatts) &&
           std::equal(a.inputs.begin(), a.inputs.end(), b.inputs.begin(), b.inputs.end(),
                      [](const InputValue& one, const InputValue& other) {
                          return one.cell == other.cell && one.unit == other.unit && one.origin == other.origin &&
                                 sameValue(one.value, other.value);
                      }) &&
           std::equal(a.contributions.begin(), a.contributions.end(), b.contributions.begin(), b.contributions.end(),
                      [](const Contribution& one, const Contribution& other) {
                          return one.cell == other.cell && one.rail == other.rail &&
                                 sameNumber(one.watts, other.watts) && sameNumber(one.amperes, other.amperes);
                      });
}

Json groupJson(const GroupResult& group, const Uncertainties& known)
{
    Json json{
        {"name", group.name}, {"block", group.block->name}, {"title", group.block->title}, {"count", group.count}};
    makeRoom(json, 12);
    if (!group.in.empty())
        json["in"] = group.in;
    if (!group.clock.empty())
        json["clock"] = group.clock;
    addNumber(json, "watts", group.watts);
    addNumber(json, "offchipWatts", group.offchipWatts);
    json["onlyCarries"] = group.onlyCarries;
    json["uncertainty"] = uncertaintyJson(known, group.block->name);
    json["outputs"] = listOf(group.contributions, [](const Contribution& part) {
        Json entry{{"cell", part.cell}, {"rail", part.rail}};
        makeRoom(entry, 4);
        addNumber(entry, "watts", part.watts);
        addNumber(entry, "amperes", part.amperes);
        return entry;
    });
    json["inputs"] = listOf(group.inputs, [](const InputValue& input) {
        Json entry{{"cell", input.cell}, {"unit", input.unit}};
        makeRoom(entry, 5);
        addValue(entry, "value", input.value);
        entry["origin"] = originWord(input.origin);
        return entry;
    });
    return json;
}

Json coolingJson(const CoolingResult& result)
{
    Json json{{"name", result.cooling.name}, {"thetaJA", result.cooling.thetaJA}};
    json["point"] = pointJson(result.point);
    return json;
}

Json useJson(const Utilisation& use)
{
    return {{"resource", use.resource}, {"used", use.used}, {"available", use.available}};
}

Json regulatorsJson(const Estimate& estimate)
{
    Json list = Json::array();
    for (const auto& [rail, current] : estimate.design.regulators) {
        const BudgetResult* result = estimate.budget("regulator of " + rail); // modes may load it more than the design
        Json entry{{"rail", rail}, {"maxAmperes", current}};
        addAmount(entry, "marginAmperes", current - (result ? result->actual : 0.0));
        list.push_back(std::move(entry));
    }
    return list;
}

Json budgetJson(const BudgetResult& budget)
{
    Json json{{"name", budget.name}, {"unit", budget.unit}, {"broken", budget.broken()}};
    addNumber(json, "limit", budget.limit);
    addAmount(json, "actual", budget.actual);
    if (budget.otherActual)
        addAmount(json, "otherActual", *budget.otherActual);
    json["verdict"] = budget.verdict();
    json["words"] = budget.words();
    return json;
}

Json carriedJson(const Carried& carried)
{
    return {{"from", carried.from.text()}, {"to", carried.to.text()}, {"value", valueText(carried.value)}};
}

// The data files that the estimate rests on.
Json filesJson(const Estimate& estimate)
{
    std::vector<const Block*> blocks;
    if (estimate.design.device)
        blocks = {&block("Parts"), &block("Static")};
    for (const GroupResult& group : estimate.groups)
        blocks.push_back(group.block);
    return listOf(dataFiles(blocks), [](const DataFile& file) {
        return Json{{"name", file.name}, {"sha256", file.sha256}};
    });
}

// With the groups that are given in their place.
Json reportJson(const Estimate& estimate, Json groups, const Uncertainties& known)
{
    Json json{{"format", kJsonFormat}, {"name", estimate.design.name}, {"version", ZELM_VERSION}};
    makeRoom(json, 24);
    addAmount(json, "totalWatts", estimate.side().totalWatts);
    addNumber(json, "dynamicWatts", estimate.dynamicWatts);
    addAmount(json, "staticWatts", estimate.side().staticWatts);
    addNumber(json, "offchipWatts", estimate.offchipWatts);
    if (estimate.design.device)
        json["part"] = estimate.design.device->part;
    if (estimate.design.environment.ambient)
        addNumber(json, "ambientTemperature", *estimate.design.environment.ambient);
    json["groups"] = std::move(groups);
    json["hierarchy"] = hierarchyJson(estimate);
    if (estimate.design.device)
        json["staticUncertainty"] = uncertaintyJson(known, "Static");
    json["sides"] = listOf(estimate.sides, sideJson);
    if (estimate.period)
        json["period"] = periodJson(estimate);
    json["cooling"] = listOf(estimate.cooling, coolingJson);
    json["utilisation"] = listOf(estimate.utilisation, useJson);
    json["regulators"] = regulatorsJson(estimate);
    json["budgets"] = listOf(estimate.budgets, budgetJson);
    json["carried"] = listOf(estimate.carried, carriedJson);
    json["warnings"] = estimate.warnings;
    if (const std::string remark = remarkOfDistributions(estimate.design); !remark.empty())
        json["remarks"] = {remark};
    json["dataFiles"] = filesJson(estimate);
    return json;
}

} // namespace

void addAmount(Json& object, const std::string& name, double value)
{
    addNumber(object, name, value);
    if (std::isnan(value))
        object[name + "Reason"] = "thermal runaway";
}

Json jsonReport(const Estimate& estimate)
{
    const Uncertainties known = uncertainties();
    const auto each = [&](const GroupResult& group) { return groupJson(group, known); };
    return reportJson(estimate, listOf(estimate.groups, each), known);
}

RunningJsonReport::RunningJsonReport() : m_uncertainties(uncertainties()) {}

std::string RunningJsonReport::write(const Estimate& estimate)
{
    m_groups.resize(estimate.groups.size());
    std::string groups;
    for (std::size_t i = 0; i < m_groups.size(); ++i) {
        const GroupResult& group = estimate.groups[i];
        Written& written = m_groups[i];
        if (written.json.empty() || !sameGroup(written.group, group))
            written = {group, compactJson(groupJson(group, m_uncertainties))};
        groups += i == 0 ? "" : ",";
        groups += written.json;
    }
    // No name can hold this: quotes within a text are escaped.
    constexpr std::string_view none = R"(,"groups":null)";
    std::string text = compactJson(reportJson(estimate, nullptr, m_uncertainties));
    text.replace(text.find(none), none.size(), fmt::format(R"(,"groups":[{}])", groups));
    return text;
}

} // namespace zelm::host

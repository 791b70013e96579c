#include "host/study/EarlierResult.h"

#include "host/base/Error.h"
#include "host/base/Json.h"
#include "host/estimate/Estimate.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace zelm::host {

namespace {

// The static power model's own, at which a design is estimated that says nothing of its temperature.
constexpr double kModelsJunction = 100.0;

// A number of a result; NaN for null, which a runaway leaves, and for what isn't there.
double resultNumber(const Json* object, const char* field)
{
    if (!object || !object->is_object())
        return std::numeric_limits<double>::quiet_NaN();
    const auto found = object->find(field);
    return found != object->end() && found->is_number() ? found->get<double>()
                                                        : std::numeric_limits<double>::quiet_NaN();
}

const Json* elementWith(const Json& object, const char* list, const char* field, const std::string& value)
{
    const auto found = object.find(list);
    if (found == object.end() || !found->is_array())
        return nullptr;
    for (const Json& element : *found) {
        if (element.is_object() && element.value(field, Json()) == value)
            return &element;
    }
    return nullptr;
}

Value valueOfResult(const ZelmCellInfo& cell, const Json& value)
{
    if (cell.type == ZelmCellInfo::Type::text)
        return value.get<std::string>();
    if (cell.type == ZelmCellInfo::Type::integer)
        return value.get<int>();
    return static_cast<float>(value.get<double>());
}

Group groupOfResult(const Json& json)
{
    Group group;
    group.block = &block(json.at("block").get<std::string>());
    group.name = json.at("name").get<std::string>();
    group.count = json.at("count").get<int>();
    group.in = json.value("in", "");
    const std::string clock = json.value("clock", "");
    group.clock = clock == group.name ? "" : clock;
    return group;
}

void addInputsOfResult(const Json& json, const Block& block, Group& group)
{
    for (const Json& input : json.at("inputs")) {
        const ZelmCellInfo& cell = block.input(input.at("cell").get<std::string>());
        const std::string name(cell.name);
        if (input.at("origin") == "design" && !group.input(name))
            group.inputs.emplace_back(name, valueOfResult(cell, input.at("value")));
    }
}

// A group of the design may be several of a result: it reaches other blocks.
std::vector<Group> groupsOfResult(const Json& groups)
{
    std::vector<Group> result;
    std::size_t i = 0;
    while (i < groups.size()) {
        Group group = groupOfResult(groups[i]);
        for (const Block* reached : inputBlocks(*group.block))
            addInputsOfResult(groups.at(i++), *reached, group);
        result.push_back(std::move(group));
    }
    return result;
}

// In the order of inputs that the design has now: where nothing else differs, sums round alike.
void orderInputsAs(const Design& now, std::vector<Group>& groups)
{
    for (Group& group : groups) {
        const auto same = std::find_if(now.groups.begin(), now.groups.end(),
                                       [&](const Group& other) { return other.name == group.name; });
        if (same == now.groups.end())
            continue;
        group.place = same->place;
        std::stable_sort(group.inputs.begin(), group.inputs.end(), [&](const auto& a, const auto& b) {
            const auto placeOf = [&](const std::string& cell) {
                return std::find_if(same->inputs.begin(), same->inputs.end(),
                                    [&](const auto& input) { return input.first == cell; }) -
                       same->inputs.begin();
            };
            return placeOf(a.first) < placeOf(b.first);
        });
    }
}

// Rails whose voltage the result has otherwise than the design would come to.
void takeRails(const Json& side, Design& design)
{
    const Estimate estimate = zelm::host::estimate(design);
    for (const Json& rail : side.at("rails")) {
        const std::string name = rail.at("rail").get<std::string>();
        const double volts = resultNumber(&rail, "volts");
        const RailResult* known = estimate.side().rail(name);
        if (volts > 0.0 && (!known || static_cast<float>(known->volts) != static_cast<float>(volts)))
            design.rails[name] = static_cast<float>(volts);
    }
}

// Of a group with all blocks that it reaches: "clock", "clock (Slice clocking)".
double wattsOfResult(const Json& result, const std::string& name)
{
    double watts = 0.0;
    for (const Json& group : result.at("groups")) {
        const std::string known = group.value("name", "");
        watts += known == name || known.starts_with(name + " (") ? resultNumber(&group, "watts") : 0.0;
    }
    return watts;
}

double amountOfResult(const Json& result, const NamedQuantity& quantity)
{
    const Json* side = elementWith(result, "sides", "process", quantity.process);
    switch (quantity.kind) {
    case NamedQuantity::Kind::total:
        return resultNumber(side, "totalWatts");
    case NamedQuantity::Kind::dynamic:
        return resultNumber(&result, "dynamicWatts");
    case NamedQuantity::Kind::staticPower:
        return resultNumber(side, "staticWatts");
    case NamedQuantity::Kind::junction:
        return resultNumber(side, "junctionTemperature");
    case NamedQuantity::Kind::rail: {
        const Json* rail = side ? elementWith(*side, "rails", "rail", quantity.of) : nullptr;
        return side && !rail ? 0.0 : resultNumber(rail, "totalAmperes");
    }
    case NamedQuantity::Kind::group: {
        const Json* group = elementWith(result, "groups", "name", quantity.of);
        return group ? resultNumber(group, "watts") : 0.0;
    }
    case NamedQuantity::Kind::cell:
        break;
    }
    return std::numeric_limits<double>::quiet_NaN();
}

} // namespace

bool isEarlierResult(const Json& json)
{
    return json.is_object() && json.contains("format") && json.contains("sides") && json.contains("groups");
}

Design designOf(const Json& result, const Design& now, const std::string& file)
{
    Design design = now;
    try {
        const Json& side = result.at("sides").at(0);
        design.name = result.at("name").get<std::string>();
        design.groups.change() = groupsOfResult(result.at("groups"));
        orderInputsAs(now, design.groups.change());
        if (!result.contains("part")) {
            design.device.reset();
        } else {
            const std::string part = result.at("part").get<std::string>();
            if (!design.device || design.device->part != part)
                design.device = Device{};
            design.device->part = part;
            const std::string process = side.at("process").get<std::string>();
            if (design.device->process != process && !(design.device->process.empty() && process == "TYP"))
                design.device->process = process;
        }
        Environment& environment = design.environment;
        const double ambient = resultNumber(&result, "ambientTemperature");
        environment.ambient = std::isnan(ambient) ? std::nullopt : std::optional(ambient);
        environment.cooling.clear();
        for (const Json& cooling : result.at("cooling"))
            environment.cooling.push_back({cooling.at("name").get<std::string>(), cooling.at("thetaJA").get<double>()});
        if (environment.ambient)
            environment.junction.reset();
        else if (const double junction = resultNumber(&side, "junctionTemperature");
                 design.device && (now.environment.junction || junction != kModelsJunction))
            environment.junction = junction;
        takeRails(side, design);
    } catch (const nlohmann::json::exception&) {
        throw Error(fmt::format("{}: looks like a result of estimate --json, but isn't whole", file));
    } catch (const Error& error) {
        throw Error(fmt::format("{}: {}", file, error.what()));
    }
    return design;
}

void startFrom(const Json& result, const Estimate& today, Diff& diff)
{
    for (DiffGroup& group : diff.groups)
        group.wattsBefore = wattsOfResult(result, group.name);
    for (DiffQuantity& quantity : diff.quantities) {
        const double before = amountOfResult(result, quantity.quantity);
        const double now = std::exchange(quantity.before, before);
        double rest = now - before;
        const bool addsUpGroups = quantity.quantity.kind == NamedQuantity::Kind::total ||
                                  quantity.quantity.kind == NamedQuantity::Kind::dynamic;
        for (const GroupResult& group : today.groups) {
            const Json* then = addsUpGroups ? elementWith(result, "groups", "name", group.name) : nullptr;
            const double change = then ? group.watts - resultNumber(then, "watts") : 0.0;
            if (change == 0.0 || std::isnan(change))
                continue;
            quantity.parts.push_back({group.name, "data", change});
            rest -= change;
        }
        if (rest != 0.0)
            quantity.parts.push_back(
                {quantity.quantity.kind == NamedQuantity::Kind::group ? quantity.quantity.of : "", "data", rest});
    }
}

} // namespace zelm::host

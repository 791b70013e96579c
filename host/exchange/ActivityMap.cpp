#include "host/exchange/ActivityMap.h"

#include "host/base/Json.h"
#include "host/base/JsonSource.h"
#include "host/base/Text.h"
#include "host/design/Fields.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>

namespace zelm::host {

namespace {

constexpr std::array<std::string_view, 16> kShares{
    "PORT_A_ENABLE_RATE", "PORT_B_ENABLE_RATE", "PORT_A_WRITE_ENABLE", "PORT_B_WRITE_ENABLE",
    "ENABLE_RATE_A",      "ENABLE_RATE_B",      "WRITE_ENABLE_A",      "WRITE_ENABLE_B",
    "SLEEP_RATE",         "LUT_WE_PROB",        "PROB_SLICE_CE",       "GATING_PROB",
    "OUTPUT_ENABLE",      "TERM_DISABLE",       "IBUF_DISABLE",        "PROB_CTRL_IMUX_USED"};
constexpr std::array<std::string_view, 3> kToggles{"TOGGLE_RATE", "INPUT_TOGGLE_RATE", "OUTPUT_TOGGLE_RATE"};

template <std::size_t count>
bool isAmong(const std::array<std::string_view, count>& names, std::string_view name)
{
    return std::find(names.begin(), names.end(), name) != names.end();
}

std::vector<std::string> signalsOf(const Json& value, const Place& where)
{
    if (!value.is_array())
        return {Fields::text(value, where)};
    std::vector<std::string> signals;
    for (std::size_t i = 0; i < value.size(); ++i)
        signals.push_back(Fields::text(value[i], where.element(i)));
    return signals;
}

std::vector<std::string> activityInputs(const Group& group)
{
    std::vector<std::string> names;
    for (const Block* block : inputBlocks(*group.block)) {
        for (const ZelmCellInfo& cell : block->cells) {
            if (cell.kind == ZelmCellInfo::Kind::userInput && activityKind(*block, cell.name))
                names.emplace_back(cell.name);
        }
    }
    return names;
}

MappedGroup mappedGroup(const Json& value, const Place& where, const Group& group)
{
    MappedGroup mapped;
    if (value.is_string()) {
        mapped.scope = Fields::text(value, where);
        return mapped;
    }
    Fields fields(value, where);
    mapped.scope = fields.text("scope");
    mapped.clock = fields.text("clock");
    if (const Json* signals = fields.take("signals"))
        mapped.signals = signalsOf(*signals, fields.place("signals"));
    if (const Json* inputs = fields.take("inputs")) {
        const Place place = fields.place("inputs");
        if (!inputs->is_object())
            place.fail(fmt::format("expected signals by inputs, found {}", Fields::describe(*inputs)));
        const std::vector<std::string> known = activityInputs(group);
        for (const auto& [cell, signals] : inputs->items()) {
            if (std::find(known.begin(), known.end(), cell) == known.end())
                place.field(cell).fail(fmt::format("a group of {} has no input of activity {}{}", group.block->name,
                                                   abbreviated(cell), suggestion(cell, known)));
            mapped.inputs.push_back({cell, signalsOf(signals, place.field(cell))});
        }
    }
    fields.refuseOthers();
    return mapped;
}

} // namespace

std::optional<ActivityKind> activityKind(const Block& block, std::string_view input)
{
    const ZelmCellInfo* cell = block.findCell(input);
    if (!cell || cell->kind != ZelmCellInfo::Kind::userInput || cell->type != ZelmCellInfo::Type::real)
        return std::nullopt;
    if (isAmong(kShares, input))
        return ActivityKind::share;
    if (!accessShareOf(input).empty())
        return ActivityKind::accessToggles;
    if (isAmong(kToggles, input) || input.ends_with("_TR"))
        return ActivityKind::toggles;
    if (input.ends_with("_SIG_RATE"))
        return ActivityKind::signalRate;
    return std::nullopt;
}

std::string_view accessShareOf(std::string_view input)
{
    if (input == "TOGGLE_RATE_A")
        return "PORT_A_ENABLE_RATE";
    return input == "TOGGLE_RATE_B" ? "PORT_B_ENABLE_RATE" : "";
}

std::map<std::string, MappedGroup> readActivityMap(const std::string& file, const Design& design)
{
    Reading reading{};
    const Json root = readJson(file, reading.source);
    const Place where(reading, "");
    if (!root.is_object())
        where.fail(fmt::format("expected an object of groups, found {}", Fields::describe(root)));
    std::vector<std::string> names;
    for (const Group& group : design.groups)
        names.push_back(group.name);
    std::map<std::string, MappedGroup> map;
    for (const auto& entry : root.items()) {
        const std::string& name = entry.key();
        const auto group =
            std::find_if(design.groups.begin(), design.groups.end(), [&](const Group& g) { return g.name == name; });
        if (group == design.groups.end())
            where.field(name).fail(
                fmt::format("the design has no group {}{}", abbreviated(name), suggestion(name, names)));
        map[name] = mappedGroup(entry.value(), where.field(name), *group);
    }
    return map;
}

} // namespace zelm::host

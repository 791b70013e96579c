#include "host/study/Quantity.h"

#include "host/base/Error.h"
#include "host/base/Text.h"
#include "host/blocks/Rails.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <optional>
#include <utility>

namespace zelm::host {

namespace {

using Kind = NamedQuantity::Kind;

struct PlainQuantity {
    std::string_view name;
    Kind kind;
};
constexpr std::array<PlainQuantity, 4> kPlainQuantities{
    {{"total", Kind::total}, {"dynamic", Kind::dynamic}, {"static", Kind::staticPower}, {"junction", Kind::junction}}};
constexpr std::string_view kRail = "rail:";
constexpr std::string_view kGroup = "group:";

[[noreturn]] void failQuantity(const std::string& text, const std::string& message)
{
    throw Error(fmt::format("{}: {}", abbreviated(text, 200), message));
}

const GroupResult* findGroup(const Estimate& estimate, std::string_view name)
{
    const auto found = std::find_if(estimate.groups.begin(), estimate.groups.end(),
                                    [&](const GroupResult& group) { return group.name == name; });
    return found == estimate.groups.end() ? nullptr : &*found;
}

const Side* findSide(const Estimate& estimate, std::string_view process)
{
    const auto found = std::find_if(estimate.sides.begin(), estimate.sides.end(),
                                    [&](const Side& side) { return side.process == process; });
    return found == estimate.sides.end() ? nullptr : &*found;
}

// Takes "@MAX" off the end. Groups may have an @ in their names.
std::string takeProcess(std::string& rest, const std::string& text, const Estimate& estimate)
{
    const std::size_t at = rest.rfind('@');
    const bool isGroups = at != std::string::npos && rest.starts_with(kGroup) &&
                          findGroup(estimate, std::string_view(rest).substr(kGroup.size())) != nullptr;
    if (at == std::string::npos || isGroups)
        return estimate.side().process;
    std::string process = rest.substr(at + 1);
    std::vector<std::string> known;
    for (const Side& side : estimate.sides)
        known.push_back(side.process);
    if (process.empty() || !findSide(estimate, process)) {
        failQuantity(text, known.front().empty()
                               ? "the design names no device, so that it has no process sides"
                               : fmt::format("there is no process side {}{}; there are {}", abbreviated(process),
                                             suggestion(process, known), orList(known)));
    }
    rest.resize(at);
    return process;
}

// A group, or a cell of one. Names of groups may have dots: the longest that fits is meant.
void readGroupQuantity(NamedQuantity& quantity, const std::string& name, const std::string& text,
                       const Estimate& estimate)
{
    if (findGroup(estimate, name)) {
        quantity.kind = Kind::group;
        quantity.of = name;
        return;
    }
    for (std::size_t dot = name.rfind('.'); dot != std::string::npos && dot > 0; dot = name.rfind('.', dot - 1)) {
        const GroupResult* group = findGroup(estimate, std::string_view(name).substr(0, dot));
        if (!group)
            continue;
        quantity.kind = Kind::cell;
        quantity.of = group->name;
        try {
            quantity.cell = &group->block->cell(name.substr(dot + 1));
        } catch (const Error& error) {
            failQuantity(text, error.what());
        }
        if (quantity.cell->type == ZelmCellInfo::Type::text)
            failQuantity(text, fmt::format("{} is no number", quantity.cell->name));
        return;
    }
    std::vector<std::string> known;
    for (const GroupResult& group : estimate.groups)
        known.push_back(group.name);
    const std::string withoutCell = name.substr(0, name.rfind('.'));
    const std::string near = suggestion(name, known);
    failQuantity(text, fmt::format("the design has no group {}{}", abbreviated(name),
                                   near.empty() ? suggestion(withoutCell, known) : near));
}

// What a person may have meant who wrote none of the kinds.
std::string nearestQuantities(const std::string& text, const Estimate& estimate)
{
    std::vector<std::string> known;
    for (const PlainQuantity& plain : kPlainQuantities)
        known.emplace_back(plain.name);
    for (const RailResult& rail : estimate.side().rails)
        known.push_back(fmt::format("{}{}", kRail, rail.name));
    for (const GroupResult& group : estimate.groups)
        known.push_back(fmt::format("{}{}", kGroup, group.name));
    if (std::string near = suggestion(text, known); !near.empty())
        return near;
    for (std::string& name : known) { // a rail or group alone
        const std::size_t colon = name.find(':');
        if (colon != std::string::npos && name.substr(colon + 1) == text)
            return fmt::format("; did you mean {}?", name);
    }
    return "";
}

// A cell of a group, computed anew from the inputs that the group had.
double cellValue(const GroupResult& group, const ZelmCellInfo& cell)
{
    group.block->load();
    const auto instance = group.block->create();
    for (const InputValue& input : group.inputs)
        instance->set(group.block->cell(input.cell), input.value);
    instance->pull(cell);
    const Value value = instance->get(cell);
    if (const int* whole = std::get_if<int>(&value))
        return *whole;
    const float* real = std::get_if<float>(&value);
    return real ? static_cast<double>(*real) : std::numeric_limits<double>::quiet_NaN();
}

} // namespace

std::string NamedQuantity::name() const
{
    std::string text;
    switch (kind) {
    case Kind::rail:
        text = fmt::format("{}{}", kRail, of);
        break;
    case Kind::group:
        text = fmt::format("{}{}", kGroup, of);
        break;
    case Kind::cell:
        text = fmt::format("{}{}.{}", kGroup, of, cell->name);
        break;
    default:
        text = std::find_if(kPlainQuantities.begin(), kPlainQuantities.end(), [&](const PlainQuantity& plain) {
                   return plain.kind == kind;
               })->name;
    }
    return process.empty() ? text : fmt::format("{}@{}", text, process);
}

std::string_view NamedQuantity::unit() const
{
    switch (kind) {
    case Kind::junction:
        return "C";
    case Kind::rail:
        return "A";
    case Kind::cell:
        return cell->unit;
    default:
        return "W";
    }
}

NamedQuantity namedQuantity(const std::string& text, const Estimate& estimate)
{
    std::string rest = text;
    NamedQuantity quantity;
    quantity.process = takeProcess(rest, text, estimate);
    const auto plain = std::find_if(kPlainQuantities.begin(), kPlainQuantities.end(),
                                    [&](const PlainQuantity& known) { return known.name == rest; });
    if (plain != kPlainQuantities.end()) {
        quantity.kind = plain->kind;
        if (plain->kind == Kind::junction && quantity.process.empty() && !estimate.design.environment.junction)
            failQuantity(text, "the design names no device, so that nothing is known of its temperature");
    } else if (rest.starts_with(kRail)) {
        quantity.kind = Kind::rail;
        quantity.of = rest.substr(kRail.size());
        const std::vector<std::string>& known = railNames();
        if (std::find(known.begin(), known.end(), quantity.of) == known.end() && !estimate.side().rail(quantity.of))
            failQuantity(
                text, fmt::format("there is no rail {}{}", abbreviated(quantity.of), suggestion(quantity.of, known)));
    } else if (rest.starts_with(kGroup)) {
        readGroupQuantity(quantity, rest.substr(kGroup.size()), text, estimate);
    } else {
        failQuantity(text, fmt::format("there is no such quantity{}; there are total, dynamic, static, junction, "
                                       "rail:NAME, group:NAME and group:NAME.CELL, each with @TYP or @MAX",
                                       nearestQuantities(rest, estimate)));
    }
    return quantity;
}

std::vector<NamedQuantity> quantitiesOf(const Estimate& estimate)
{
    std::vector<NamedQuantity> all;
    for (const Side& side : estimate.sides) {
        for (const Kind kind : {Kind::total, Kind::staticPower, Kind::junction}) {
            const bool known = !side.process.empty() || kind == Kind::total ||
                               (kind == Kind::junction && estimate.design.environment.junction);
            if (known)
                all.push_back({kind, "", nullptr, side.process});
        }
        for (const RailResult& rail : side.rails)
            all.push_back({Kind::rail, rail.name, nullptr, side.process});
    }
    const std::string& process = estimate.side().process;
    all.push_back({Kind::dynamic, "", nullptr, process});
    for (const GroupResult& group : estimate.groups) {
        if (!group.onlyCarries)
            all.push_back({Kind::group, group.name, nullptr, process});
    }
    return all;
}

double valueOf(const NamedQuantity& quantity, const Estimate& estimate)
{
    const double none = std::numeric_limits<double>::quiet_NaN();
    const Side* side = findSide(estimate, quantity.process);
    const GroupResult* group = nullptr;
    switch (quantity.kind) {
    case Kind::dynamic:
        return estimate.dynamicWatts;
    case Kind::total:
        return side ? side->totalWatts : none;
    case Kind::staticPower:
        return side ? side->staticWatts : none;
    case Kind::junction:
        return side && side->settles() ? side->junction : none;
    case Kind::rail: {
        const RailResult* rail = side ? side->rail(quantity.of) : nullptr;
        return rail ? rail->amperes() : side ? 0.0 : none;
    }
    case Kind::group:
        group = findGroup(estimate, quantity.of);
        return group ? group->watts : 0.0;
    case Kind::cell:
        group = findGroup(estimate, quantity.of);
        return group ? cellValue(*group, *quantity.cell) : 0.0;
    }
    return none;
}

std::string amountText(double value, std::string_view unit)
{
    if (std::isnan(value))
        return "none";
    if (unit == "W" || unit == "A" || unit == "V")
        return si(value, unit);
    if (unit == "C")
        return fmt::format("{:.2f} C", value);
    return unit.empty() ? fmt::format("{:.6g}", value) : fmt::format("{:.6g} {}", value, unit);
}

} // namespace zelm::host

#include "host/design/Supplies.h"

#include "host/base/Error.h"
#include "host/base/Json.h"
#include "host/base/Text.h"
#include "host/base/Units.h"
#include "host/blocks/Rails.h"
#include "host/design/Sections.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <set>

namespace zelm::host {

namespace {

// The rail of a list, known and not said before.
std::string readRail(const Json& value, const Place& where, std::set<std::string>& said)
{
    std::string rail = Fields::text(value, where);
    const std::vector<std::string>& known = railNames();
    if (std::find(known.begin(), known.end(), rail) == known.end())
        where.fail(fmt::format("there is no rail of the name \"{}\"{}", abbreviated(rail), suggestion(rail, known)));
    if (!said.insert(rail).second)
        where.fail(fmt::format("the rail {} stands twice", rail));
    return rail;
}

double readShare(const Json& value, const Place& where)
{
    const double share = Fields::number(value, where, kShare);
    if (share == 0.0)
        where.fail("an efficiency of 0 would need endless input: expected a share above 0, up to 1");
    return share;
}

std::vector<std::pair<double, double>> readEfficiency(const Json& value, const Place& where)
{
    if (!value.is_array())
        return {{0.0, readShare(value, where)}};
    if (value.empty())
        where.fail("expected a share, or a list of [load in amperes, share]; the list is empty");
    std::vector<std::pair<double, double>> curve;
    for (std::size_t i = 0; i < value.size(); ++i) {
        const Place place = where.element(i);
        if (!value[i].is_array() || value[i].size() != 2)
            place.fail(fmt::format("expected [load in amperes, share], found {}", Fields::describe(value[i])));
        const double load = Fields::number(value[i][0], place.element(0), kAmperes);
        if (!curve.empty() && !(load > curve.back().first))
            place.element(0).fail(fmt::format("{:g} A doesn't lie above the {:g} A of the point before: loads rise",
                                              load, curve.back().first));
        curve.emplace_back(load, readShare(value[i][1], place.element(1)));
    }
    return curve;
}

Supply readSupply(const std::string& name, const Json& value, const Place& where, std::set<std::string>& fed)
{
    Fields fields(value, where);
    Supply supply;
    supply.name = name;
    if (name.empty() || sourceVolts(name))
        where.fail(name.empty() ? "a supply needs a name" : "this name reads like a source's volts; give it another");
    if (const Json* rails = fields.take("rails")) {
        const Place place = fields.place("rails");
        if (!rails->is_array())
            place.fail(fmt::format("expected a list of rails, found {}", Fields::describe(*rails)));
        for (std::size_t i = 0; i < rails->size(); ++i)
            supply.rails.push_back(readRail((*rails)[i], place.element(i), fed));
    }
    supply.from = fields.text("from");
    supply.maxCurrent = fields.number("maxCurrent", kAmperes);
    supply.volts = fields.number("volts", kVolts);
    if (supply.volts == 0.0)
        fields.place("volts").fail("a supply of 0 V feeds nothing");
    if (const Json* efficiency = fields.take("efficiency"))
        supply.efficiency = readEfficiency(*efficiency, fields.place("efficiency"));
    fields.refuseOthers();
    return supply;
}

void refuseUnknownFeed(const Supply& supply, const Supplies& supplies, const Place& place)
{
    if (supply.from.empty() || supplies.find(supply.from))
        return;
    if (const auto volts = sourceVolts(supply.from); volts && *volts > 0.0 && *volts <= kMostVolts)
        return;
    std::vector<std::string> names;
    for (const Supply& other : supplies.all)
        names.push_back(other.name);
    place.fail(fmt::format("there is no supply \"{}\"{}; a source is named by its volts, \"12V\", up to {:g}",
                           abbreviated(supply.from), suggestion(supply.from, names), kMostVolts));
}

// Follows what feeds a supply, up to a source.
void refuseCycle(const Supply& supply, const Supplies& supplies, const Place& place)
{
    std::vector<std::string> way{supply.name};
    for (const Supply* above = supplies.find(supply.from); above; above = supplies.find(above->from)) {
        way.push_back(above->name);
        if (above == &supply)
            place.fail(way.size() == 2
                           ? std::string("a supply can't feed itself")
                           : fmt::format("the supplies feed each other in a circle: {}", fmt::join(way, " from ")));
        if (way.size() > supplies.all.size())
            return; // a circle that this supply only draws from: its own members are told of it
    }
}

void refuseIdle(const Supply& supply, const Supplies& supplies, const Place& where)
{
    const bool feeds = std::any_of(supplies.all.begin(), supplies.all.end(),
                                   [&](const Supply& other) { return other.from == supply.name; });
    if (supply.rails.empty() && !feeds)
        where.fail("a supply needs its \"rails\", or another supply that draws \"from\" it");
    if (supply.rails.empty() && !supply.volts)
        where.fail("a supply that feeds only other supplies needs its \"volts\"");
}

} // namespace

const Supply* Supplies::find(const std::string& name) const
{
    const auto found = std::find_if(all.begin(), all.end(), [&](const Supply& supply) { return supply.name == name; });
    return found == all.end() ? nullptr : &*found;
}

const Supply* Supplies::feeding(const std::string& rail) const
{
    const auto found = std::find_if(all.begin(), all.end(), [&](const Supply& supply) {
        return std::find(supply.rails.begin(), supply.rails.end(), rail) != supply.rails.end();
    });
    return found == all.end() ? nullptr : &*found;
}

std::optional<double> sourceVolts(const std::string& name)
{
    try {
        const auto written = writtenQuantity(name);
        return written ? std::optional(inUnit(*written, "V")) : std::nullopt;
    } catch (const Error&) {
        return std::nullopt; // a word that begins with a number, or no volts
    }
}

std::vector<Supply> readSupplies(const Json& value, const std::map<std::string, double>& regulators,
                                 const Reading& reading)
{
    const Place where(reading, "supplies");
    Fields byName(value, where);
    if (value.size() > kMostSupplies)
        where.fail(fmt::format("a board has at most {} supplies, found {}", kMostSupplies, value.size()));
    Supplies supplies;
    std::set<std::string> fed;
    for (const auto& [name, entry] : value.items())
        supplies.all.push_back(readSupply(name, entry, byName.place(name), fed));
    for (const Supply& supply : supplies.all) {
        const Place place = byName.place(supply.name);
        refuseUnknownFeed(supply, supplies, place.field("from"));
        refuseCycle(supply, supplies, place.field("from"));
        refuseIdle(supply, supplies, place);
        for (std::size_t i = 0; i < supply.rails.size(); ++i) {
            if (regulators.contains(supply.rails[i]))
                place.field("rails").element(i).fail(fmt::format(
                    "{} has a regulator of its own; give it a supply's maxCurrent, or a regulator", supply.rails[i]));
        }
    }
    for (const auto& [rail, current] : regulators) {
        if (supplies.find(rail))
            byName.place(rail).fail(fmt::format("the regulator of {} has this name; give the supply another", rail));
        supplies.all.push_back({rail, {rail}, "", current, std::nullopt});
    }
    return supplies.all;
}

std::vector<std::vector<std::string>> readSequence(const Json& value, const std::vector<Supply>& supplies,
                                                   const Reading& reading)
{
    const Place where(reading, "sequence");
    if (!value.is_array() || value.empty())
        where.fail(
            fmt::format("expected a list of rails in the order of powering up, found {}", Fields::describe(value)));
    const Supplies known{supplies, {}};
    std::vector<std::vector<std::string>> steps;
    std::set<std::string> said;
    const auto add = [&](const Json& rail, const Place& place) {
        steps.back().push_back(readRail(rail, place, said));
        if (!known.feeding(steps.back().back()))
            place.fail(fmt::format("no supply feeds {}", steps.back().back()));
    };
    for (std::size_t i = 0; i < value.size(); ++i) {
        const Place place = where.element(i);
        steps.emplace_back();
        if (!value[i].is_array()) {
            add(value[i], place);
            continue;
        }
        if (value[i].empty())
            place.fail("expected rails that power up together; the list is empty");
        for (std::size_t j = 0; j < value[i].size(); ++j)
            add(value[i][j], place.element(j));
    }
    return steps;
}

} // namespace zelm::host

#include "host/estimate/Estimate.h"

#include "host/base/Error.h"
#include "host/base/Text.h"
#include "host/blocks/LegalWords.h"
#include "host/blocks/Rails.h"
#include "host/blocks/RollUp.h"
#include "host/estimate/Budgets.h"
#include "host/estimate/Carry.h"
#include "host/estimate/Combination.h"
#include "host/estimate/CrossChecks.h"
#include "host/estimate/Modes.h"
#include "host/estimate/Ranges.h"
#include "host/estimate/StaticPower.h"
#include "host/estimate/Supplies.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <set>

namespace zelm::host {

namespace {

double inWattsOrAmperes(std::string_view unit, double value)
{
    if (unit == "uW" || unit == "uA")
        return value * 1e-6;
    if (unit == "mW" || unit == "mA")
        return value * 1e-3;
    return value;
}

bool isCurrent(std::string_view unit)
{
    return unit.ends_with('A');
}

// The volts at which a group loads a rail: its own input for that rail, else the rail's voltage elsewhere.
double railVolts(const Running& group, const std::string& rail, const RailVolts& rails)
{
    if (const ZelmCellInfo* own = group.railInput(rail)) {
        const Value value = group.instance->get(*own);
        if (const float* volts = std::get_if<float>(&value))
            return static_cast<double>(*volts);
    }
    return rails.volts(rail).value_or(0.0);
}

// How many units a group stands for where its block estimates only one.
double multiplier(const Running& group)
{
    double units = group.count;
    for (const PerUnit& rule : perUnit()) {
        if (rule.block == group.block->name && group.get(rule.cell).index() != 0)
            units *= group.whole(rule.cell);
    }
    return units;
}

std::vector<InputValue> inputsOf(const Running& group)
{
    std::vector<InputValue> inputs;
    for (const ZelmCellInfo& cell : group.block->cells) {
        if (cell.kind != ZelmCellInfo::Kind::userInput)
            continue;
        const Value value = group.instance->get(cell);
        if (value.index() != 0)
            inputs.push_back({std::string(cell.name), std::string(cell.unit), value, group.originOf(cell.name)});
    }
    return inputs;
}

// Says what makes a group's power wrong: an Error, or a warning.
class GapTeller {
public:
    GapTeller(const Design& design, Gaps gaps, std::vector<std::string>& warnings)
        : m_design(&design), m_gaps(gaps), m_warnings(&warnings)
    {
    }

    void tell(const Running& group, const std::string& message) const
    {
        if (m_gaps == Gaps::refused)
            throw Error(fmt::format("{}: group \"{}\": {} (--keep-going estimates the rest)",
                                    m_design->source.at(group.place + ".inputs"), group.name, message));
        m_warnings->push_back(fmt::format("group \"{}\": {}", group.name, message));
    }

    void tell(const Running& group, const MissingRow& row) const
    {
        const std::string inputs = combinationWithout(group, row);
        tell(group, fmt::format("{}{} has no row {} in {}, so the group's power can't be right",
                                inputs.empty() ? "" : fmt::format("{} don't go together: ", inputs),
                                group.block->dataFile(), row.key, row.table));
    }

private:
    const Design* m_design;
    Gaps m_gaps;
    std::vector<std::string>* m_warnings;
};

// What an output of a group amounts to, in watts or amperes; nothing if it means nothing.
std::optional<double> amountOf(const ZelmCellInfo& output, const Running& group, const GapTeller& gaps)
{
    const Value value = group.instance->get(output);
    const float* number = std::get_if<float>(&value);
    double amount = number ? static_cast<double>(*number) : std::nan("");
    if (!output.goes.scaling.empty()) {
        const Value factor = group.get(output.goes.scaling);
        const float* scaling = std::get_if<float>(&factor);
        amount *= scaling ? static_cast<double>(*scaling) : std::nan("");
    }
    constexpr double beyondBelief = 1e15; // what a sentinel that flowed through a formula looks like
    if (!(std::fabs(amount) < beyondBelief)) {
        gaps.tell(group,
                  fmt::format("{} has no meaningful value ({})", output.name, number ? exactText(*number) : "unset"));
        return std::nullopt;
    }
    return inWattsOrAmperes(output.unit, amount) * multiplier(group);
}

// What an output adds to its rail.
Contribution contributionOf(const ZelmCellInfo& output, double amount, const Running& group, const RailVolts& rails,
                            std::vector<std::string>& warnings)
{
    const std::string_view rail = output.goes.name;
    Contribution part{std::string(output.name), rail == "VCCO" ? group.bankRail() : std::string(rail), amount, amount};
    const double volts = padVolts(group, output.name).value_or(railVolts(group, part.rail, rails));
    if (isCurrent(output.unit))
        part.watts = amount * volts;
    else
        part.amperes = volts > 0.0 ? amount / volts : 0.0;
    if (!(volts > 0.0) && amount != 0.0)
        warnings.push_back(fmt::format("group \"{}\": no voltage is known for rail {}, its current counts as 0",
                                       group.name, part.rail));
    return part;
}

GroupResult finish(Running& group, const RailVolts& rails, const GapTeller& gaps, std::vector<std::string>& warnings)
{
    for (const MissingRow& row : group.missingRows) {
        if (!missesInGoodDesigns(*group.block, row))
            gaps.tell(group, row);
    }
    GroupResult result{group.name, group.block, group.count, inputsOf(group), {}, 0.0, 0.0, true};
    for (const ZelmCellInfo& output : group.block->cells) {
        const auto kind = output.goes.kind;
        if (kind != zelm::Destination::Kind::rail && kind != zelm::Destination::Kind::offchip)
            continue;
        result.onlyCarries = false;
        const std::optional<double> amount = amountOf(output, group, gaps);
        if (!amount)
            continue;
        if (kind == zelm::Destination::Kind::offchip) {
            result.offchipWatts += *amount;
            continue;
        }
        result.contributions.push_back(contributionOf(output, *amount, group, rails, warnings));
        result.watts += result.contributions.back().watts;
    }
    for (std::string& warning : rangeWarnings(group))
        warnings.push_back(std::move(warning));
    return result;
}

void addUp(Estimate& estimate, Side& side)
{
    for (const GroupResult& group : estimate.groups) {
        for (const Contribution& part : group.contributions) {
            auto rail = std::find_if(side.rails.begin(), side.rails.end(),
                                     [&](const RailResult& r) { return r.name == part.rail; });
            if (rail == side.rails.end())
                rail = side.rails.insert(rail, RailResult{part.rail, "", 0.0, 0.0, 0.0, 0.0, 0.0, 0.0});
            rail->dynamicAmperes += part.amperes;
            rail->dynamicWatts += part.watts;
            if (rail->volts == 0.0 && part.amperes != 0.0)
                rail->volts = part.watts / part.amperes;
        }
    }
    side.totalWatts = side.staticWatts + estimate.dynamicWatts;
}

void refuseUnknownRails(const Design& design)
{
    const std::vector<std::string> known = railNames();
    const auto check = [&](const std::string& rail, const char* where) {
        if (std::find(known.begin(), known.end(), rail) == known.end())
            throw Error(fmt::format("{}: there is no rail of this name{}",
                                    design.source.at(fmt::format("{}.{}", where, rail)), suggestion(rail, known)));
    };
    for (const auto& [rail, volts] : design.rails)
        check(rail, "rails");
    for (const auto& [rail, current] : design.regulators)
        check(rail, "regulators");
    for (const auto& [rail, current] : design.budgets.rails)
        check(rail, "budgets.rails");
}

// Limits on rails that mean nothing: a name that differs by a letter, say.
void warnOfIdleLimits(const Design& design, const ResolvedDevice* device, Estimate& result)
{
    std::vector<std::string> loaded;
    for (const RailResult& rail : result.side().rails) {
        if (rail.amperes() != 0.0)
            loaded.push_back(rail.name);
    }
    const auto check = [&](const std::string& rail, const std::string& place) {
        const bool lacking = device && !hasRail(device->name, rail);
        if (!lacking && std::find(loaded.begin(), loaded.end(), rail) != loaded.end())
            return;
        const std::string what = lacking ? device->name + " has no such rail" : "nothing loads this rail";
        result.warnings.push_back(fmt::format("{}: {}{}", design.source.at(place), what, suggestion(rail, loaded)));
    };
    for (const auto& [rail, current] : design.regulators)
        check(rail, "regulators." + rail);
    for (const auto& [rail, current] : design.budgets.rails)
        check(rail, "budgets.rails." + rail);
    for (const Supply& supply : design.supplies.all) {
        for (std::size_t i = 0; i < supply.rails.size() && !design.regulators.contains(supply.name); ++i)
            check(supply.rails[i], fmt::format("supplies.{}.rails[{}]", supply.name, i));
    }
}

// Two outputs of a group on one rail warn of the same.
void sayOnce(std::vector<std::string>& warnings)
{
    std::set<std::string> said;
    std::erase_if(warnings, [&](const std::string& warning) { return !said.insert(warning).second; });
}

} // namespace

Estimate estimate(const Design& design, Curves curves, Gaps gaps)
{
    refuseUnknownRails(design);
    refuseImpossible(design);
    Estimate result;
    result.design = design;
    result.warnings = design.warnings;
    const GapTeller gapTeller(design, gaps, result.warnings);

    std::optional<ResolvedDevice> device;
    if (design.device)
        device = resolve(design);
    const RailVolts rails(design, device ? &*device : nullptr);

    std::vector<Running> running = start(design, rails, device ? &*device : nullptr, result.carried, result.warnings);
    for (Running& group : running) {
        result.groups.push_back(finish(group, rails, gapTeller, result.warnings));
        result.dynamicWatts += result.groups.back().watts;
        result.offchipWatts += result.groups.back().offchipWatts;
    }
    for (std::string& warning : warningsAcross(running, device ? &*device : nullptr))
        result.warnings.push_back(std::move(warning));
    if (device) {
        result.utilisation = utilisation(running, *device);
        for (const Utilisation& use : result.utilisation) {
            if (use.used > use.available)
                result.warnings.push_back(fmt::format("the design uses {:g} {} of the {:g} that {} has", use.used,
                                                      use.resource, use.available, device->name));
        }
        result.usedCounts = usedCounts(running, *device, design, result.carried);
        addStaticPower(result, *device, result.usedCounts, curves);
    } else {
        Side side;
        side.junction = design.environment.junction.value_or(0.0);
        result.sides.push_back(side);
        if (design.environment.ambient)
            result.warnings.emplace_back("without a device there is no static power and no junction temperature");
    }
    for (Side& side : result.sides)
        addUp(result, side);
    warnOfIdleLimits(design, device ? &*device : nullptr, result);
    addSupplies(result);
    addModes(result, gaps);
    checkBudgets(result);
    sayOnce(result.warnings);
    return result;
}

} // namespace zelm::host

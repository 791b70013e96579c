#include "host/estimate/GroupPower.h"

#include "host/base/Error.h"
#include "host/base/Text.h"
#include "host/blocks/LegalWords.h"
#include "host/blocks/RollUp.h"
#include "host/estimate/Combination.h"
#include "host/estimate/Ranges.h"

#include <fmt/format.h>

#include <cmath>
#include <optional>
#include <string_view>

namespace zelm::host {

namespace {

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
double railVolts(const Running& group, std::string_view rail, const RailVolts& rails)
{
    if (const ZelmCellInfo* own = group.railInput(rail)) {
        group.instance->pull(*own); // some are for hosts alone: no formula has put the default there
        if (const std::optional<float> volts = group.instance->real(*own))
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
    inputs.reserve(group.block->inputs.size());
    for (const ZelmCellInfo* cell : group.block->inputs) {
        Value value = group.instance->get(*cell);
        if (value.index() != 0)
            inputs.push_back({cell->name, cell->unit, std::move(value), group.originOf(*cell)});
    }
    return inputs;
}

// What an output of a group amounts to, in watts or amperes; nothing if it means nothing.
std::optional<double> amountOf(const ZelmCellInfo& output, const Running& group, double units, const GapTeller& gaps)
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
    return inWattsOrAmperes(output.unit, amount) * units;
}

// What an output adds to its rail.
Contribution contributionOf(const ZelmCellInfo& output, double amount, const Running& group, const RailVolts& rails,
                            std::vector<std::string>& warnings)
{
    const std::string_view rail = output.goes.name;
    Contribution part{output.name, rail == "VCCO" ? group.bankRail() : rail, amount, amount};
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

} // namespace

GroupResult powerOf(Running& group, const Design& design, const RailVolts& rails, Gaps gaps,
                    std::vector<std::string>& warnings)
{
    const GapTeller teller(design, gaps, warnings);
    bool complete = true;
    for (const MissingRow& row : group.missingRows) {
        if (missesInGoodDesigns(*group.block, row))
            continue;
        complete = false;
        teller.tell(group, row);
    }
    GroupResult result{group.name, group.block, group.count, inputsOf(group), {}, 0.0, 0.0, group.block->powers.empty(),
                       group.in,   group.clock};
    const double units = multiplier(group);
    for (const ZelmCellInfo* output : group.block->powers) {
        const std::optional<double> amount = amountOf(*output, group, units, teller);
        if (!amount)
            continue;
        if (output->goes.kind == zelm::Destination::Kind::offchip) {
            result.offchipWatts += *amount;
            continue;
        }
        result.contributions.push_back(contributionOf(*output, *amount, group, rails, warnings));
        result.watts += result.contributions.back().watts;
    }
    if (complete && !result.onlyCarries && group.count > 0) {
        if (const std::string inputs = combinationWithoutPower(group); !inputs.empty())
            teller.tell(group, fmt::format("{} don't go together: the formulas find no power for them", inputs));
    }
    for (std::string& warning : rangeWarnings(group))
        warnings.push_back(std::move(warning));
    constexpr double noDeviceTakes = 1000.0; // watts
    if (result.watts > noDeviceTakes)
        warnings.push_back(fmt::format("group \"{}\": {:.4g} W are more than any device takes: look for a count, clock "
                                       "or rate in the wrong unit",
                                       group.name, result.watts));
    return result;
}

} // namespace zelm::host

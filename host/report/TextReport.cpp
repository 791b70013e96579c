#include "host/base/Text.h"
#include "host/report/Report.h"
#include "host/report/SubtotalsReport.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <cmath>
#include <set>

namespace zelm::host {

namespace {

std::string title(const Paint& paint, const std::string& text)
{
    return fmt::format("\n{}\n{:=<{}}\n", paint.title(text), "", text.size());
}

std::string degrees(double value)
{
    return fmt::format("{:.2f} C", value);
}

constexpr const char* kRunaway = "none: thermal runaway";

std::string junctionText(const Side& side)
{
    return side.settles() ? degrees(side.junction) : kRunaway;
}

// Of a rail's regulator, at the worst moment if the design has modes.
double marginOf(const Estimate& estimate, const RailResult& rail, double limit)
{
    const BudgetResult* result = estimate.budget("regulator of " + rail.name);
    return limit - (result ? result->actual : rail.amperes());
}

std::string railsTable(const Estimate& estimate)
{
    const Side& side = estimate.side();
    const bool both = estimate.sides.size() > 1;
    std::vector<std::string> header{"Rail", "Volts", "Dynamic", "Static", "Total", "Power", "Power-up"};
    if (both)
        header.push_back(estimate.sides[1].process + " power");
    if (!estimate.design.regulators.empty())
        header.emplace_back("Margin");
    TextTable table(header);
    for (const RailResult& rail : side.rails) {
        const RailResult* other = both ? estimate.sides[1].rail(rail.name) : nullptr;
        if (rail.amperes() == 0.0 && rail.powerUpAmperes == 0.0 &&
            (!other || (other->amperes() == 0.0 && other->powerUpAmperes == 0.0)))
            continue;
        // The model knows it for the worst case only.
        const double powerUp =
            other && !(other->powerUpAmperes <= rail.powerUpAmperes) ? other->powerUpAmperes : rail.powerUpAmperes;
        std::vector<std::string> cells{rail.inside.empty() ? rail.name : rail.name + " *",
                                       fmt::format("{:.3f}", rail.volts),
                                       si(rail.dynamicAmperes, "A"),
                                       si(rail.staticAmperes, "A"),
                                       si(rail.amperes(), "A"),
                                       si(rail.watts(), "W"),
                                       si(powerUp, "A")};
        if (both)
            cells.push_back(other ? si(other->watts(), "W") : "");
        if (const auto regulator = estimate.design.regulators.find(rail.name);
            regulator != estimate.design.regulators.end())
            cells.push_back(si(marginOf(estimate, rail, regulator->second), "A"));
        table.row(cells);
    }
    table.rule();
    std::vector<std::string> totals{
        "Total", "", si(estimate.dynamicWatts, "W"), si(side.staticWatts, "W"), "", si(side.totalWatts, "W"), ""};
    if (both)
        totals.push_back(si(estimate.sides[1].totalWatts, "W"));
    table.row(totals);
    std::string text = table.text();
    std::set<std::string> notes;
    for (const RailResult& rail : side.rails) {
        if (!rail.inside.empty() && rail.amperes() != 0.0)
            notes.insert(rail.inside);
    }
    for (const std::string& inside : notes)
        text += fmt::format("* the static current of this rail is part of {}'s and counts once in the total\n", inside);
    return text;
}

std::string groupsTable(const Estimate& estimate)
{
    TextTable table({"Group", "Block", "Count", "Rail", "Power", "Current"});
    std::vector<std::string> carriers;
    for (const GroupResult& group : estimate.groups) {
        bool first = true;
        const auto lead = [&] {
            std::vector<std::string> cells{first ? group.name : "", first ? std::string(group.block->name) : "",
                                           first ? std::to_string(group.count) : ""};
            first = false;
            return cells;
        };
        std::map<std::string_view, std::pair<double, double>> byRail;
        std::vector<std::string_view> order;
        for (const Contribution& part : group.contributions) {
            if (!byRail.contains(part.rail))
                order.push_back(part.rail);
            byRail[part.rail].first += part.watts;
            byRail[part.rail].second += part.amperes;
        }
        for (const std::string_view rail : order) {
            std::vector<std::string> cells = lead();
            cells.insert(cells.end(), {std::string(rail), si(byRail[rail].first, "W"), si(byRail[rail].second, "A")});
            table.row(cells);
        }
        if (group.offchipWatts != 0.0) {
            std::vector<std::string> cells = lead();
            cells.insert(cells.end(), {"(off chip)", si(group.offchipWatts, "W"), ""});
            table.row(cells);
        }
        if (first && group.onlyCarries)
            carriers.push_back(group.name);
        else if (first) {
            std::vector<std::string> cells = lead();
            cells.insert(cells.end(), {"(no power)", "", ""});
            table.row(cells);
        }
    }
    table.rule();
    table.row({"Dynamic power", "", "", "", si(estimate.dynamicWatts, "W"), ""});
    if (estimate.offchipWatts != 0.0)
        table.row({"Off chip, in no total", "", "", "", si(estimate.offchipWatts, "W"), ""});
    std::string text = table.text();
    if (!carriers.empty())
        text += fmt::format("carry values to others, no power of their own: {}\n", fmt::join(carriers, ", "));
    return text;
}

std::string sidesTable(const Estimate& estimate)
{
    TextTable table({"Process", "Junction", "Static", "Dynamic", "Total"});
    for (const Side& side : estimate.sides)
        table.row({side.process, junctionText(side), si(side.staticWatts, "W"), si(estimate.dynamicWatts, "W"),
                   si(side.totalWatts, "W")});
    std::string text = table.text();
    for (const Side& side : estimate.sides) {
        if (side.thermal)
            text += fmt::format("{}: {}\n", side.process, side.thermal->words);
        if (side.highestAmbient)
            text += fmt::format("{}: the junction limit holds up to an ambient of {:.2f} degrees\n", side.process,
                                *side.highestAmbient);
        if (side.largestThetaJA)
            text += fmt::format("{}: the junction limit holds up to a thetaJA of {:.3f} degrees/W\n", side.process,
                                *side.largestThetaJA);
    }
    return text;
}

std::string warningLines(const Estimate& estimate, const Paint& paint)
{
    std::string text;
    for (const std::string& warning : estimate.warnings)
        text += paint.warning(fmt::format("- {}", warning)) + "\n";
    return text;
}

std::string summary(const Estimate& estimate, const Paint& paint)
{
    const Side& side = estimate.side();
    std::string text = paint.title(estimate.design.name) + "\n";
    if (side.settles())
        text += fmt::format("{} on the chip: {} dynamic, {} static", si(side.totalWatts, "W"),
                            si(estimate.dynamicWatts, "W"), si(side.staticWatts, "W"));
    else
        text += fmt::format("Power on the chip: {}", paint.bad(kRunaway));
    if (!side.process.empty())
        text += fmt::format(", process {}", side.process);
    if (!side.process.empty() && side.settles())
        text += fmt::format(", junction {}", degrees(side.junction));
    if (const std::size_t count = estimate.warnings.size(); count > 0)
        text += ", " + paint.warning(fmt::format("{} warning{}", count, count == 1 ? "" : "s"));
    text += "\n" + warningLines(estimate, paint);
    if (const std::string remark = remarkOfDistributions(estimate.design); !remark.empty())
        text += wrapped(fmt::format("{}; zelm sample tells the band", shown(remark)), 100) + "\n";
    return text;
}

std::string suppliesTable(const Estimate& estimate)
{
    TextTable table(
        {"Supply", "From", "Process", "Volts", "Load", "Limit", "Margin", "Power-up", "Efficiency", "Loss", "Input"});
    for (std::size_t i = 0; i < estimate.side().supplies->supplies.size(); ++i) {
        for (const Side& side : estimate.sides) {
            const SupplyResult& supply = side.supplies->supplies[i];
            const bool first = &side == &estimate.side();
            table.row({first ? supply.name : "", first ? supply.from : "", side.process,
                       fmt::format("{:.3f}", supply.volts), si(supply.loadAmperes, "A"),
                       supply.maxAmperes ? si(*supply.maxAmperes, "A") : "",
                       supply.maxAmperes ? si(*supply.maxAmperes - supply.loadAmperes, "A") : "",
                       si(supply.powerUpAmperes, "A"), fmt::format("{:.1f} %", 100.0 * supply.efficiency),
                       si(supply.lossWatts(), "W"), si(supply.inputWatts, "W")});
        }
    }
    table.rule();
    for (const Side& side : estimate.sides)
        table.row({"Board input", "", side.process, "", "", "", "", "", "", "", si(side.supplies->inputWatts, "W")});
    std::string text = table.text();
    for (const Side& side : estimate.sides) {
        if (!side.supplies->unfed.empty())
            text += fmt::format("{}no supply feeds {}: {} that the board's input doesn't count\n",
                                side.process.empty() ? "" : side.process + ": ", fmt::join(side.supplies->unfed, ", "),
                                si(side.supplies->unfedWatts, "W"));
    }
    return text;
}

// Seconds with a prefix, or hours and days.
std::string duration(double seconds)
{
    constexpr double hour = 3600.0;
    constexpr double day = 24.0 * hour;
    if (seconds >= 10.0 * day)
        return fmt::format("{:.1f} days", seconds / day);
    return seconds >= hour ? fmt::format("{:.1f} h", seconds / hour) : si(seconds, "s");
}

std::string energy(double joules)
{
    constexpr double wattHour = 3600.0;
    return joules >= 10.0 * wattHour ? si(joules / wattHour, "Wh") : si(joules, "J");
}

std::string temperature(double value)
{
    return std::isnan(value) ? "none" : degrees(value);
}

std::string modesTable(const Estimate& estimate)
{
    const Period& period = *estimate.period;
    TextTable table({"Mode", "For", "Process", "Dynamic", "Static", "Total", "Peak", "Energy", "Lowest", "Highest"});
    for (const ModeResult& mode : period.modes) {
        for (std::size_t i = 0; i < mode.sides.size(); ++i) {
            const ModeSide& side = mode.sides[i];
            table.row({i == 0 ? mode.name : "", i == 0 ? duration(mode.seconds) : "", estimate.sides[i].process,
                       si(mode.dynamicWatts, "W"), si(side.staticWatts, "W"), si(side.watts, "W"),
                       si(side.peakWatts, "W"), energy(side.joules), temperature(side.lowestJunction),
                       temperature(side.highestJunction)});
        }
    }
    table.rule();
    for (const PeriodSide& side : period.sides)
        table.row({"Period", duration(period.seconds), side.process, "", "", si(side.watts, "W"),
                   si(side.peakWatts, "W"), energy(side.joules), temperature(side.lowest.junction),
                   temperature(side.highest.junction)});
    return table.text();
}

std::string momentWords(const Estimate& estimate, const Moment& moment)
{
    return fmt::format("{} at {} in {}", degrees(moment.junction), si(moment.seconds, "s"),
                       estimate.period->modes[moment.mode].name);
}

std::string periodLines(const Estimate& estimate)
{
    std::string text;
    for (const PeriodSide& side : estimate.period->sides) {
        const std::string process = side.process.empty() ? "" : side.process + ": ";
        text += fmt::format("{}{}\n", process, side.words);
        if (!side.settles)
            continue;
        if (!estimate.design.stages.empty() && !side.process.empty())
            text += fmt::format("{}the junction is lowest with {}, highest with {}\n", process,
                                momentWords(estimate, side.lowest), momentWords(estimate, side.highest));
        if (estimate.side().supplies)
            text += fmt::format("{}the board takes {} on average, {} at most\n", process, si(side.inputWatts, "W"),
                                si(side.peakInputWatts, "W"));
        if (side.batteryHours)
            text += fmt::format("{}the battery of {:g} Wh lasts {}\n", process, *estimate.design.batteryWattHours,
                                duration(*side.batteryHours * 3600.0));
    }
    return text;
}

std::string railsOverModes(const Estimate& estimate)
{
    const PeriodSide& side = estimate.period->sides.front();
    const PeriodSide* other = estimate.period->sides.size() > 1 ? &estimate.period->sides[1] : nullptr;
    std::vector<std::string> header{"Rail over the modes", "Average", "Peak", "Peak current", "In mode"};
    if (other)
        header.insert(header.end(), {other->process + " average", other->process + " peak"});
    TextTable table(header);
    for (const RailPeriod& rail : side.rails) {
        const auto there = other ? std::find_if(other->rails.begin(), other->rails.end(),
                                                [&](const RailPeriod& one) { return one.rail == rail.rail; })
                                 : side.rails.end();
        if (rail.peakAmperes == 0.0)
            continue;
        std::vector<std::string> cells{rail.rail, si(rail.watts, "W"), si(rail.peakWatts, "W"),
                                       si(rail.peakAmperes, "A"), rail.peakMode};
        if (other && there != other->rails.end())
            cells.insert(cells.end(), {si(there->watts, "W"), si(there->peakWatts, "W")});
        table.row(cells);
    }
    return table.text();
}

std::string suppliesOverModes(const Estimate& estimate)
{
    TextTable table({"Supply over the modes", "Process", "Peak load", "In mode", "Limit", "Margin", "Power-up",
                     "Average input", "Peak input"});
    const std::vector<PeriodSide>& sides = estimate.period->sides;
    for (std::size_t i = 0; i < estimate.side().supplies->supplies.size(); ++i) {
        for (const PeriodSide& side : sides) {
            if (!side.settles)
                continue;
            const SupplyPeriod& supply = side.supplies[i];
            table.row({&side == &sides.front() ? supply.name : "", side.process, si(supply.peakAmperes, "A"),
                       supply.peakMode, supply.maxAmperes ? si(*supply.maxAmperes, "A") : "",
                       supply.maxAmperes ? si(*supply.maxAmperes - supply.peakAmperes, "A") : "",
                       si(supply.powerUpAmperes, "A"), si(supply.inputWatts, "W"), si(supply.peakInputWatts, "W")});
        }
    }
    return table.text();
}

std::string startUpTable(const Estimate& estimate)
{
    std::vector<std::string> header{"Since the start"};
    for (const Side& side : estimate.sides)
        header.insert(header.end(), {side.process + " lowest", side.process + " highest"});
    TextTable table(header);
    constexpr std::size_t stride = 20; // a table for people: JSON, CSV and the page have all
    for (std::size_t i = stride - 1; i < estimate.side().startUp.size(); i += stride) {
        std::vector<std::string> cells{duration(estimate.side().startUp[i].seconds)};
        for (const Side& side : estimate.sides) {
            const bool known = i < side.startUp.size();
            cells.push_back(known ? degrees(side.startUp[i].lowestJunction) : "none");
            cells.push_back(known ? degrees(side.startUp[i].highestJunction) : "none");
        }
        table.row(cells);
    }
    return table.text();
}

std::string subsystemsTable(const Side& side)
{
    TextTable table({"Static power by subsystem", "Power"});
    for (const Subsystem& subsystem : side.subsystems)
        table.row({std::string(subsystem.cell), si(subsystem.watts, "W")});
    return table.text();
}

std::string coolingTable(const Estimate& estimate, const Paint& paint)
{
    TextTable table({"Cooling", "thetaJA", "Junction", "Power", "Verdict"});
    for (const CoolingResult& result : estimate.cooling)
        table.row({result.cooling.name, fmt::format("{:.3f}", result.cooling.thetaJA),
                   result.point.converged ? degrees(result.point.junction) : "none",
                   result.point.converged ? si(result.point.power, "W") : "",
                   result.point.converged ? "settles" : paint.bad(result.point.words)});
    return table.text();
}

std::string utilisationTable(const Estimate& estimate)
{
    TextTable table({"Resource", "Used", "Available", "Share"});
    for (const Utilisation& use : estimate.utilisation)
        table.row({use.resource, fmt::format("{:.0f}", use.used), fmt::format("{:.0f}", use.available),
                   use.available > 0.0 ? fmt::format("{:.1f} %", 100.0 * use.used / use.available) : "none there"});
    return table.text();
}

std::string budgetsTable(const Estimate& estimate, const Paint& paint)
{
    std::vector<std::string> header{"Budget", "Limit", "Actual", "Verdict"};
    if (estimate.sides.size() > 1)
        header.push_back(estimate.sides[1].process + " actual");
    TextTable table(header);
    for (const BudgetResult& budget : estimate.budgets) {
        const auto amount = [&](double actual) {
            return std::isnan(actual) ? std::string(kRunaway) : fmt::format("{:.4g} {}", actual, budget.unit);
        };
        std::vector<std::string> cells{budget.name, fmt::format("{:g} {}", budget.limit, budget.unit),
                                       amount(budget.actual),
                                       budget.broken() ? paint.bad(budget.verdict()) : paint.good(budget.verdict())};
        if (budget.otherActual)
            cells.push_back(*budget.otherActual <= budget.limit ? amount(*budget.otherActual)
                                                                : paint.bad(amount(*budget.otherActual)));
        table.row(cells);
    }
    return table.text();
}

std::string inputsTable(const Estimate& estimate)
{
    TextTable table({"Group", "Input", "Value", "Unit", "Origin"});
    for (const GroupResult& group : estimate.groups) {
        for (const InputValue& input : group.inputs)
            table.row({group.name, std::string(input.cell), valueText(input.value), std::string(input.unit),
                       std::string(originWord(input.origin))});
    }
    return table.text();
}

std::string carriedTable(const Estimate& estimate)
{
    TextTable table({"Carried from", "To", "Value"});
    for (const Carried& carried : estimate.carried)
        table.row({shown(carried.from.text()), shown(carried.to.text()), shown(valueText(carried.value))});
    return table.text();
}

void cleanPeriod(Estimate& estimate)
{
    if (!estimate.period)
        return;
    for (ModeResult& mode : estimate.period->modes)
        mode.name = shown(mode.name);
    for (PeriodSide& side : estimate.period->sides) {
        for (RailPeriod& rail : side.rails)
            rail.peakMode = shown(rail.peakMode);
        for (SupplyPeriod& supply : side.supplies) {
            supply.name = shown(supply.name);
            supply.peakMode = shown(supply.peakMode);
        }
    }
}

// The estimate with all text that people wrote as a terminal may have it.
Estimate forTerminal(const Estimate& estimate)
{
    Estimate safe = estimate;
    const auto clean = [](std::string& text) { text = shown(text); };
    clean(safe.design.name);
    for (GroupResult& group : safe.groups) {
        clean(group.name);
        clean(group.in);
        for (InputValue& input : group.inputs) {
            if (std::string* text = std::get_if<std::string>(&input.value))
                clean(*text);
        }
    }
    for (CoolingResult& result : safe.cooling)
        clean(result.cooling.name);
    for (Side& side : safe.sides) {
        for (std::size_t i = 0; side.supplies && i < side.supplies->supplies.size(); ++i) {
            clean(side.supplies->supplies[i].name);
            clean(side.supplies->supplies[i].from);
        }
    }
    cleanPeriod(safe);
    for (BudgetResult& budget : safe.budgets)
        clean(budget.name);
    for (std::string& warning : safe.warnings)
        clean(warning);
    return safe;
}

} // namespace

std::string textReport(const Estimate& result, bool verbose, const Paint& paint)
{
    const Estimate estimate = forTerminal(result);
    std::string text = summary(estimate, paint);
    const auto section = [&](const std::string& name, const std::string& body) { text += title(paint, name) + body; };
    section("Groups", groupsTable(estimate));
    if (hasHierarchy(estimate))
        section("Hierarchy", hierarchyTable(estimate));
    section("Rails", railsTable(estimate));
    if (estimate.side().supplies)
        section("Supplies", suppliesTable(estimate));
    if (estimate.period) {
        section("Modes", modesTable(estimate) + periodLines(estimate) + "\n" + railsOverModes(estimate));
        if (estimate.side().supplies)
            text += "\n" + suppliesOverModes(estimate);
    }
    if (!estimate.side().startUp.empty())
        section("Start-up", startUpTable(estimate));
    if (!estimate.side().subsystems.empty()) {
        section("Process sides", sidesTable(estimate));
        section("Static power", subsystemsTable(estimate.side()));
    }
    if (estimate.cooling.size() > 1)
        section("Cooling", coolingTable(estimate, paint));
    if (!estimate.utilisation.empty())
        section("Utilisation", utilisationTable(estimate));
    if (!estimate.budgets.empty())
        section("Budgets", budgetsTable(estimate, paint));
    if (verbose)
        section("Inputs", inputsTable(estimate));
    if (verbose && !estimate.carried.empty())
        section("Carried between blocks", carriedTable(estimate));
    return text;
}

} // namespace zelm::host

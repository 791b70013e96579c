#include "host/Report.h"

#include "host/DataFiles.h"
#include "host/Json.h"
#include "host/Text.h"

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

std::string junctionText(const Side& side)
{
    return side.settles() ? degrees(side.junction) : "no equilibrium";
}

const RailResult* find(const Side& side, const std::string& rail)
{
    const auto found =
        std::find_if(side.rails.begin(), side.rails.end(), [&](const RailResult& r) { return r.name == rail; });
    return found == side.rails.end() ? nullptr : &*found;
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
        const RailResult* other = both ? find(estimate.sides[1], rail.name) : nullptr;
        if (rail.amperes() == 0.0 && rail.powerUpAmperes == 0.0 &&
            (!other || (other->amperes() == 0.0 && other->powerUpAmperes == 0.0)))
            continue;
        // The model knows it for the worst case only.
        const double powerUp = std::max(rail.powerUpAmperes, other ? other->powerUpAmperes : 0.0);
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
            cells.push_back(si(regulator->second - rail.amperes(), "A"));
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

// Some blocks only work out inputs of others: nothing that they yield loads a rail.
bool onlyCarries(const GroupResult& group)
{
    const auto all = outputs();
    return std::none_of(all.begin(), all.end(), [&](const Output& output) {
        return output.block == group.block->name && output.role != Role::shown;
    });
}

std::string budgetWords(const BudgetResult& budget)
{
    if (!std::isfinite(budget.actual))
        return fmt::format("{}: no equilibrium, so the limit of {:g} {} can't hold", budget.name, budget.limit,
                           budget.unit);
    return fmt::format("{}: {:.4g} {}, which is {:.4g} {} {} the limit of {:g} {}", budget.name, budget.actual,
                       budget.unit, std::fabs(budget.limit - budget.actual), budget.unit,
                       budget.broken() ? "above" : "below", budget.limit, budget.unit);
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
        std::map<std::string, std::pair<double, double>> byRail;
        std::vector<std::string> order;
        for (const Contribution& part : group.contributions) {
            if (!byRail.contains(part.rail))
                order.push_back(part.rail);
            byRail[part.rail].first += part.watts;
            byRail[part.rail].second += part.amperes;
        }
        for (const std::string& rail : order) {
            std::vector<std::string> cells = lead();
            cells.insert(cells.end(), {rail, si(byRail[rail].first, "W"), si(byRail[rail].second, "A")});
            table.row(cells);
        }
        if (group.offchipWatts != 0.0) {
            std::vector<std::string> cells = lead();
            cells.insert(cells.end(), {"(off chip)", si(group.offchipWatts, "W"), ""});
            table.row(cells);
        }
        if (first && onlyCarries(group))
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

std::string escapedXml(const std::string& text)
{
    std::string escaped;
    for (const char c : text) {
        switch (c) {
        case '&':
            escaped += "&amp;";
            break;
        case '<':
            escaped += "&lt;";
            break;
        case '>':
            escaped += "&gt;";
            break;
        case '"':
            escaped += "&quot;";
            break;
        default:
            // XML 1.0 can't hold the other control characters, not even escaped.
            escaped += static_cast<unsigned char>(c) < ' ' && c != '\t' && c != '\n' ? ' ' : c;
        }
    }
    return escaped;
}

Json railJson(const RailResult& rail)
{
    Json json{{"rail", rail.name}};
    if (!rail.inside.empty())
        json["staticCurrentInside"] = rail.inside;
    addNumber(json, "volts", rail.volts);
    addNumber(json, "dynamicAmperes", rail.dynamicAmperes);
    addNumber(json, "staticAmperes", rail.staticAmperes);
    addNumber(json, "totalAmperes", rail.amperes());
    addNumber(json, "dynamicWatts", rail.dynamicWatts);
    addNumber(json, "staticWatts", rail.staticWatts);
    addNumber(json, "watts", rail.watts());
    addNumber(json, "powerUpAmperes", rail.powerUpAmperes);
    return json;
}

Json pointJson(const OperatingPoint& point)
{
    Json json{{"converged", point.converged}};
    addNumber(json, "junctionTemperature", point.junction);
    addNumber(json, "watts", point.power);
    addNumber(json, "loopGain", point.loopGain);
    json["words"] = point.words;
    return json;
}

Json sideJson(const Side& side)
{
    Json json{{"process", side.process}};
    addNumber(json, "junctionTemperature", side.junction);
    addNumber(json, "staticWatts", side.staticWatts);
    addNumber(json, "totalWatts", side.totalWatts);
    if (side.thermal)
        json["thermal"] = pointJson(*side.thermal);
    if (side.highestAmbient)
        addNumber(json, "highestAmbientTemperature", *side.highestAmbient);
    if (side.largestThetaJA)
        addNumber(json, "largestThetaJA", *side.largestThetaJA);
    json["rails"] = Json::array();
    for (const RailResult& rail : side.rails)
        json["rails"].push_back(railJson(rail));
    json["subsystems"] = Json::array();
    for (const Subsystem& subsystem : side.subsystems) {
        Json entry{{"cell", subsystem.cell}};
        addNumber(entry, "watts", subsystem.watts);
        json["subsystems"].push_back(entry);
    }
    json["curve"] = Json::array();
    for (const auto& [temperature, watts] : side.curve) {
        Json entry;
        addNumber(entry, "junctionTemperature", temperature);
        addNumber(entry, "watts", watts);
        json["curve"].push_back(entry);
    }
    return json;
}

Json groupJson(const GroupResult& group)
{
    Json json{
        {"name", group.name}, {"block", group.block->name}, {"title", group.block->title}, {"count", group.count}};
    addNumber(json, "watts", group.watts);
    addNumber(json, "offchipWatts", group.offchipWatts);
    json["onlyCarries"] = onlyCarries(group);
    json["outputs"] = Json::array();
    for (const Contribution& part : group.contributions) {
        Json entry{{"cell", part.cell}, {"rail", part.rail}};
        addNumber(entry, "watts", part.watts);
        addNumber(entry, "amperes", part.amperes);
        json["outputs"].push_back(entry);
    }
    json["inputs"] = Json::array();
    for (const InputValue& input : group.inputs) {
        Json entry{{"cell", input.cell}, {"unit", input.unit}};
        addValue(entry, "value", input.value);
        entry["origin"] = originWord(input.origin);
        json["inputs"].push_back(entry);
    }
    return json;
}

} // namespace

std::string textReport(const Estimate& estimate, bool verbose, const Paint& paint)
{
    const Side& side = estimate.side();
    std::string text = paint.title(estimate.design.name) + "\n";
    text += fmt::format("{} on the chip: {} dynamic, {} static", si(side.totalWatts, "W"),
                        si(estimate.dynamicWatts, "W"), si(side.staticWatts, "W"));
    if (side.process.empty())
        text += "\n";
    else if (!side.settles())
        text += fmt::format(", process {}: {}, amounts are those at {}, where the search ended\n", side.process,
                            paint.bad("no equilibrium"), degrees(side.junction));
    else
        text += fmt::format(", process {}, junction {}\n", side.process, degrees(side.junction));

    text += title(paint, "Groups") + groupsTable(estimate);
    text += title(paint, "Rails") + railsTable(estimate);
    if (!side.subsystems.empty()) {
        text += title(paint, "Process sides") + sidesTable(estimate);
        TextTable table({"Static power by subsystem", "Power"});
        for (const Subsystem& subsystem : side.subsystems)
            table.row({subsystem.cell, si(subsystem.watts, "W")});
        text += title(paint, "Static power") + table.text();
    }
    if (estimate.cooling.size() > 1) {
        TextTable table({"Cooling", "thetaJA", "Junction", "Power", "Verdict"});
        for (const CoolingResult& result : estimate.cooling)
            table.row({result.cooling.name, fmt::format("{:.3f}", result.cooling.thetaJA),
                       result.point.converged ? degrees(result.point.junction) : "none",
                       result.point.converged ? si(result.point.power, "W") : "",
                       result.point.converged ? "settles" : paint.bad(result.point.words)});
        text += title(paint, "Cooling") + table.text();
    }
    if (!estimate.utilisation.empty()) {
        TextTable table({"Resource", "Used", "Available", "Share"});
        for (const Utilisation& use : estimate.utilisation)
            table.row({use.resource, fmt::format("{:.0f}", use.used), fmt::format("{:.0f}", use.available),
                       use.available > 0.0 ? fmt::format("{:.1f} %", 100.0 * use.used / use.available) : "none there"});
        text += title(paint, "Utilisation") + table.text();
    }
    if (!estimate.budgets.empty()) {
        std::vector<std::string> header{"Budget", "Limit", "Actual", "Verdict"};
        if (estimate.sides.size() > 1)
            header.push_back(estimate.sides[1].process + " actual");
        TextTable table(header);
        for (const BudgetResult& budget : estimate.budgets) {
            const auto amount = [&](double actual) { return fmt::format("{:.4g} {}", actual, budget.unit); };
            std::vector<std::string> cells{budget.name, fmt::format("{:g} {}", budget.limit, budget.unit),
                                           amount(budget.actual),
                                           budget.broken() ? paint.bad("BROKEN") : paint.good("kept")};
            if (budget.otherActual)
                cells.push_back(*budget.otherActual <= budget.limit ? amount(*budget.otherActual)
                                                                    : paint.bad(amount(*budget.otherActual)));
            table.row(cells);
        }
        text += title(paint, "Budgets") + table.text();
    }
    if (verbose) {
        TextTable table({"Group", "Input", "Value", "Unit", "Origin"});
        for (const GroupResult& group : estimate.groups) {
            for (const InputValue& input : group.inputs)
                table.row({group.name, input.cell, valueText(input.value), input.unit,
                           std::string(originWord(input.origin))});
        }
        text += title(paint, "Inputs") + table.text();
    }
    if (verbose && !estimate.carried.empty()) {
        TextTable table({"Carried from", "To", "Value"});
        for (const Carried& carried : estimate.carried)
            table.row({carried.from, carried.to, carried.value});
        text += title(paint, "Carried between blocks") + table.text();
    }
    if (!estimate.warnings.empty()) {
        text += title(paint, "Warnings");
        for (const std::string& warning : estimate.warnings)
            text += paint.warning(fmt::format("- {}", warning)) + "\n";
    }
    return text;
}

Json jsonReport(const Estimate& estimate)
{
    Json json{{"name", estimate.design.name}, {"version", ZELM_VERSION}};
    addNumber(json, "totalWatts", estimate.side().totalWatts);
    addNumber(json, "dynamicWatts", estimate.dynamicWatts);
    addNumber(json, "staticWatts", estimate.side().staticWatts);
    addNumber(json, "offchipWatts", estimate.offchipWatts);
    if (estimate.design.device)
        json["part"] = estimate.design.device->part;
    if (estimate.design.environment.ambient)
        addNumber(json, "ambientTemperature", *estimate.design.environment.ambient);
    Json groups = Json::array();
    for (const GroupResult& group : estimate.groups)
        groups.push_back(groupJson(group));
    json["groups"] = std::move(groups);
    Json sides = Json::array();
    for (const Side& side : estimate.sides)
        sides.push_back(sideJson(side));
    json["sides"] = std::move(sides);
    Json cooling = Json::array();
    for (const CoolingResult& result : estimate.cooling) {
        Json entry{{"name", result.cooling.name}, {"thetaJA", result.cooling.thetaJA}};
        entry["point"] = pointJson(result.point);
        cooling.push_back(entry);
    }
    json["cooling"] = std::move(cooling);
    Json utilisation = Json::array();
    for (const Utilisation& use : estimate.utilisation)
        utilisation.push_back({{"resource", use.resource}, {"used", use.used}, {"available", use.available}});
    json["utilisation"] = std::move(utilisation);
    Json regulators = Json::array();
    for (const auto& [rail, current] : estimate.design.regulators) {
        const RailResult* result = find(estimate.side(), rail);
        Json entry{{"rail", rail}, {"maxAmperes", current}};
        addNumber(entry, "marginAmperes", current - (result ? result->amperes() : 0.0));
        regulators.push_back(entry);
    }
    json["regulators"] = std::move(regulators);
    Json budgets = Json::array();
    for (const BudgetResult& budget : estimate.budgets) {
        Json entry{{"name", budget.name}, {"unit", budget.unit}, {"broken", budget.broken()}};
        addNumber(entry, "limit", budget.limit);
        addNumber(entry, "actual", budget.actual);
        if (budget.otherActual)
            addNumber(entry, "otherActual", *budget.otherActual);
        entry["words"] = budgetWords(budget);
        budgets.push_back(entry);
    }
    json["budgets"] = std::move(budgets);
    Json carried = Json::array();
    for (const Carried& c : estimate.carried)
        carried.push_back({{"from", c.from}, {"to", c.to}, {"value", c.value}});
    json["carried"] = std::move(carried);
    json["warnings"] = estimate.warnings;
    Json files = Json::array();
    for (const DataFile& file : dataFiles(estimate))
        files.push_back({{"name", file.name}, {"sha256", file.sha256}});
    json["dataFiles"] = std::move(files);
    return json;
}

std::string csvReport(const Estimate& estimate)
{
    std::string text = "kind,process,name,block,count,rail,volts,dynamic_w,dynamic_a,static_w,static_a,powerup_a\n";
    for (const GroupResult& group : estimate.groups) {
        for (const Contribution& part : group.contributions)
            text += fmt::format("group,,{},{},{},{},,{},{},,,\n", escapedCsv(group.name), group.block->name,
                                group.count, part.rail, part.watts, part.amperes);
        if (group.offchipWatts != 0.0)
            text += fmt::format("offchip,,{},{},{},,,{},,,,\n", escapedCsv(group.name), group.block->name, group.count,
                                group.offchipWatts);
    }
    for (const Side& side : estimate.sides) {
        for (const RailResult& rail : side.rails)
            text +=
                fmt::format("rail,{},{},,,{},{},{},{},{},{},{}\n", side.process,
                            rail.inside.empty() ? "" : "in " + rail.inside, rail.name, rail.volts, rail.dynamicWatts,
                            rail.dynamicAmperes, rail.staticWatts, rail.staticAmperes, rail.powerUpAmperes);
        text += fmt::format("total,{},,,,,,{},,{},,\n", side.process, estimate.dynamicWatts, side.staticWatts);
    }
    return text;
}

std::string junitReport(const Estimate& estimate)
{
    const auto broken = std::count_if(estimate.budgets.begin(), estimate.budgets.end(),
                                      [](const BudgetResult& budget) { return budget.broken(); });
    std::string text = fmt::format("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                                   "<testsuite name=\"{}\" tests=\"{}\" failures=\"{}\">\n",
                                   escapedXml(estimate.design.name), estimate.budgets.size(), broken);
    for (const BudgetResult& budget : estimate.budgets) {
        text += fmt::format("  <testcase classname=\"budgets\" name=\"{}\"", escapedXml(budget.name));
        if (budget.broken())
            text += fmt::format(">\n    <failure message=\"{:g} {} is above the limit of {:g} {}\"/>\n  </testcase>\n",
                                budget.actual, budget.unit, budget.limit, budget.unit);
        else
            text += "/>\n";
    }
    return text + "</testsuite>\n";
}

} // namespace zelm::host

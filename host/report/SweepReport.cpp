#include "host/report/SweepReport.h"

#include "host/base/Json.h"
#include "host/base/Text.h"
#include "host/report/Report.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <map>
#include <span>

namespace zelm::host {

namespace {

std::vector<std::string> brokenBudgets(const Estimate& estimate)
{
    std::vector<std::string> names;
    for (const BudgetResult& budget : estimate.budgets) {
        if (budget.broken())
            names.push_back(budget.name);
    }
    return names;
}

// The budgets that one process side breaks: it alone is to blame.
std::vector<std::string> brokenBudgetsAt(const Estimate& estimate, const std::string& process)
{
    std::vector<std::string> names;
    for (const BudgetResult& budget : estimate.budgets) {
        if (budget.brokenAt(process))
            names.push_back(budget.name);
    }
    return names;
}

// Where the process varies, the other side has a point of its own.
bool variesProcess(const Sweep& sweep)
{
    return std::any_of(sweep.variations.begin(), sweep.variations.end(),
                       [](const Variation& variation) { return variation.path == "device.process"; });
}

std::span<const Side> sidesOf(const Sweep& sweep, const SweepPoint& point)
{
    const std::span<const Side> all(point.estimate.sides);
    return variesProcess(sweep) ? all.first(1) : all;
}

// What breaks on the sides that a point tells of.
std::vector<std::string> brokenBudgets(const Sweep& sweep, const SweepPoint& point)
{
    return variesProcess(sweep) ? brokenBudgetsAt(point.estimate, point.estimate.side().process)
                                : brokenBudgets(point.estimate);
}

std::string sweepTable(const Sweep& sweep, const Paint& paint)
{
    std::vector<std::string> header;
    for (const Variation& variation : sweep.variations)
        header.push_back(shown(sweepName(variation)));
    header.emplace_back("Dynamic");
    for (const Side& side : sidesOf(sweep, sweep.points.front())) {
        const std::string process = side.process.empty() || variesProcess(sweep) ? "" : side.process + " ";
        header.insert(header.end(), {process + "static", process + "total", process + "junction"});
    }
    const bool budgets = !sweep.points.front().estimate.budgets.empty();
    if (budgets)
        header.emplace_back("Budgets");
    TextTable rows(header);
    std::map<std::string, std::size_t> warnings;
    for (const SweepPoint& point : sweep.points) {
        std::vector<std::string> cells;
        for (const Json& value : point.values)
            cells.push_back(shown(sweepWord(value)));
        cells.push_back(si(point.estimate.dynamicWatts, "W"));
        for (const Side& side : sidesOf(sweep, point)) {
            cells.insert(cells.end(), {si(side.staticWatts, "W"), si(side.totalWatts, "W"),
                                       side.settles() ? fmt::format("{:.2f} C", side.junction)
                                                      : paint.bad("none: thermal runaway")});
        }
        if (budgets) {
            const std::vector<std::string> broken = brokenBudgets(sweep, point);
            cells.push_back(broken.empty() ? paint.good("kept")
                                           : paint.bad(fmt::format("BROKEN: {}", fmt::join(broken, ", "))));
        }
        rows.row(cells);
        for (const std::string& warning : point.estimate.warnings)
            ++warnings[shown(warning)];
    }
    std::string text = rows.text();
    for (const auto& [warning, times] : warnings)
        text += paint.warning(fmt::format("- {} (at {} of {} points)", warning, times, sweep.points.size())) + "\n";
    return text;
}

Json sweepJson(const Sweep& sweep)
{
    Json list = Json::array();
    for (const SweepPoint& point : sweep.points) {
        Json entry{{"settings", Json::object()}};
        for (std::size_t i = 0; i < sweep.variations.size(); ++i)
            entry["settings"][sweepName(sweep.variations[i])] = point.values[i];
        addNumber(entry, "dynamicWatts", point.estimate.dynamicWatts);
        addNumber(entry, "offchipWatts", point.estimate.offchipWatts);
        entry["sides"] = Json::array();
        for (const Side& side : sidesOf(sweep, point)) {
            Json each{{"process", side.process}};
            addAmount(each, "junctionTemperature", side.junction);
            addAmount(each, "staticWatts", side.staticWatts);
            addAmount(each, "totalWatts", side.totalWatts);
            each["settles"] = side.settles();
            entry["sides"].push_back(std::move(each));
        }
        entry["budgetsBroken"] = brokenBudgets(sweep, point);
        entry["warnings"] = point.estimate.warnings;
        list.push_back(std::move(entry));
    }
    return list;
}

std::string sweepCsv(const Sweep& sweep)
{
    std::string text;
    for (const Variation& variation : sweep.variations)
        text += escapedCsv(sweepName(variation)) + ",";
    text += "process,dynamic_w,static_w,total_w,junction_c,settles,budgets_broken\n";
    for (const SweepPoint& point : sweep.points) {
        std::string settings;
        for (const Json& value : point.values)
            settings += escapedCsv(sweepWord(value)) + ",";
        for (const Side& side : sidesOf(sweep, point))
            text += fmt::format(
                "{}{},{},{},{},{},{},{}\n", settings, side.process, point.estimate.dynamicWatts,
                csvNumber(side.staticWatts), csvNumber(side.totalWatts), csvNumber(side.junction),
                side.settles() ? "yes" : "no",
                escapedCsv(fmt::format("{}", fmt::join(brokenBudgetsAt(point.estimate, side.process), "; "))));
    }
    return text;
}

} // namespace

std::string sweepReport(const Sweep& sweep, SweepFormat format, const Paint& paint)
{
    switch (format) {
    case SweepFormat::json:
        return jsonText(sweepJson(sweep));
    case SweepFormat::csv:
        return sweepCsv(sweep);
    case SweepFormat::table:
        break;
    }
    return sweepTable(sweep, paint);
}

} // namespace zelm::host

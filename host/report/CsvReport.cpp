#include "host/base/Error.h"
#include "host/base/Text.h"
#include "host/report/Report.h"
#include "host/report/SubtotalsReport.h"

#include <fmt/format.h>

namespace zelm::host {

namespace {

std::string groupsCsv(const Estimate& estimate)
{
    std::string text = "group,block,count,in,clock,rail,dynamic_w,dynamic_a\n";
    for (const GroupResult& group : estimate.groups) {
        const std::string lead = fmt::format("{},{},{},{},{}", escapedCsv(group.name), group.block->name, group.count,
                                             escapedCsv(group.in), escapedCsv(group.clock));
        for (const Contribution& part : group.contributions)
            text += fmt::format("{},{},{},{}\n", lead, part.rail, part.watts, part.amperes);
        if (group.offchipWatts != 0.0)
            text += fmt::format("{},off chip,{},\n", lead, group.offchipWatts);
    }
    return text;
}

std::string railsCsv(const Estimate& estimate)
{
    std::string text = "process,rail,static_inside,volts,dynamic_w,dynamic_a,static_w,static_a,powerup_a\n";
    for (const Side& side : estimate.sides) {
        for (const RailResult& rail : side.rails)
            text += fmt::format("{},{},{},{},{},{},{},{},{}\n", side.process, rail.name, rail.inside, rail.volts,
                                rail.dynamicWatts, rail.dynamicAmperes, csvNumber(rail.staticWatts),
                                csvNumber(rail.staticAmperes), csvNumber(rail.powerUpAmperes));
    }
    return text;
}

std::string totalsCsv(const Estimate& estimate)
{
    std::string text = "process,junction_c,dynamic_w,static_w,total_w,offchip_w\n";
    for (const Side& side : estimate.sides)
        text += fmt::format("{},{},{},{},{},{}\n", side.process, csvNumber(side.junction), estimate.dynamicWatts,
                            csvNumber(side.staticWatts), csvNumber(side.totalWatts), estimate.offchipWatts);
    return text;
}

std::string suppliesCsv(const Estimate& estimate)
{
    std::string text = "supply,process,from,volts,load_a,max_a,powerup_a,output_w,efficiency,loss_w,input_w\n";
    for (const Side& side : estimate.sides) {
        for (const SupplyResult& supply : side.supplies->supplies)
            text += fmt::format(
                "{},{},{},{},{},{},{},{},{},{},{}\n", escapedCsv(supply.name), side.process, escapedCsv(supply.from),
                supply.volts, csvNumber(supply.loadAmperes), supply.maxAmperes ? csvNumber(*supply.maxAmperes) : "",
                csvNumber(supply.powerUpAmperes), csvNumber(supply.outputWatts), csvNumber(supply.efficiency),
                csvNumber(supply.lossWatts()), csvNumber(supply.inputWatts));
        text += fmt::format("board input,{},,,,,,,,,{}\n", side.process, csvNumber(side.supplies->inputWatts));
    }
    return text;
}

std::string modesCsv(const Estimate& estimate)
{
    std::string text = "mode,process,seconds,dynamic_w,static_w,total_w,peak_w,input_w,energy_j,lowest_c,highest_c\n";
    for (const ModeResult& mode : estimate.period->modes) {
        for (std::size_t i = 0; i < mode.sides.size(); ++i) {
            const ModeSide& side = mode.sides[i];
            text += fmt::format("{},{},{},{},{},{},{},{},{},{},{}\n", escapedCsv(mode.name), estimate.sides[i].process,
                                mode.seconds, mode.dynamicWatts, csvNumber(side.staticWatts), csvNumber(side.watts),
                                csvNumber(side.peakWatts), csvNumber(side.inputWatts), csvNumber(side.joules),
                                csvNumber(side.lowestJunction), csvNumber(side.highestJunction));
        }
    }
    return text;
}

std::string modeGroupsCsv(const Estimate& estimate)
{
    std::string text = "mode,group,dynamic_w\n";
    for (const ModeResult& mode : estimate.period->modes) {
        for (std::size_t i = 0; i < mode.groupWatts.size(); ++i)
            text += fmt::format("{},{},{}\n", escapedCsv(mode.name), escapedCsv(estimate.groups[i].name),
                                mode.groupWatts[i]);
    }
    return text;
}

std::string modeRailsCsv(const Estimate& estimate)
{
    std::string text = "rail,process,average_w,peak_w,peak_a,peak_mode\n";
    for (const PeriodSide& side : estimate.period->sides) {
        for (const RailPeriod& rail : side.rails)
            text += fmt::format("{},{},{},{},{},{}\n", rail.rail, side.process, csvNumber(rail.watts),
                                csvNumber(rail.peakWatts), csvNumber(rail.peakAmperes), escapedCsv(rail.peakMode));
    }
    return text;
}

std::string momentsCsv(const Estimate& estimate)
{
    std::string text = "seconds,process,mode,junction_c,total_w,input_w\n";
    for (const PeriodSide& side : estimate.period->sides) {
        for (const Moment& moment : side.moments)
            text += fmt::format("{},{},{},{},{},{}\n", moment.seconds, side.process,
                                escapedCsv(estimate.period->modes[moment.mode].name), moment.junction, moment.watts,
                                moment.inputWatts);
    }
    return text;
}

std::string startUpCsv(const Estimate& estimate)
{
    std::string text = "start_up_s,process,lowest_c,highest_c\n";
    for (const Side& side : estimate.sides) {
        for (const WarmingUp& stretch : side.startUp)
            text += fmt::format("{},{},{},{}\n", stretch.seconds, side.process, stretch.lowestJunction,
                                stretch.highestJunction);
    }
    return text;
}

using CsvTable = std::pair<const char*, std::string (*)(const Estimate&)>;
constexpr CsvTable kCsvTables[] = {{"groups", groupsCsv}, {"rails", railsCsv}, {"totals", totalsCsv}};

bool hasSupplies(const Estimate& estimate)
{
    return estimate.side().supplies.has_value();
}

bool hasModes(const Estimate& estimate)
{
    return estimate.period.has_value();
}

bool hasStartUp(const Estimate& estimate)
{
    return !estimate.side().startUp.empty();
}

// Tables that some designs have.
struct OwnTable {
    const char* name;
    std::string (*text)(const Estimate&);
    bool (*isThere)(const Estimate&);
    const char* needs;
};
constexpr OwnTable kOwnTables[] = {{"supplies", suppliesCsv, hasSupplies, "supplies"},
                                   {"modes", modesCsv, hasModes, "modes"},
                                   {"mode-groups", modeGroupsCsv, hasModes, "modes"},
                                   {"mode-rails", modeRailsCsv, hasModes, "modes"},
                                   {"moments", momentsCsv, hasModes, "modes"},
                                   {"start-up", startUpCsv, hasStartUp, "thermal stages and --start-up"}};

} // namespace

std::vector<std::string> csvTables()
{
    std::vector<std::string> names;
    for (const CsvTable& table : kCsvTables)
        names.emplace_back(table.first);
    for (const OwnTable& table : kOwnTables)
        names.emplace_back(table.name);
    return names;
}

std::string csvTable(const Estimate& estimate, const std::string& name)
{
    for (const CsvTable& table : kCsvTables) {
        if (name == table.first)
            return table.second(estimate);
    }
    for (const OwnTable& table : kOwnTables) {
        if (name != table.name)
            continue;
        if (!table.isThere(estimate))
            throw Error(fmt::format("--csv {}: that table needs {}", name, table.needs));
        return table.text(estimate);
    }
    throw Error(fmt::format("--csv {}: there is no such table{}; there are {}", abbreviated(name),
                            suggestion(name, csvTables()), orList(csvTables())));
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
    if (hasHierarchy(estimate)) {
        for (const Subtotal& sum : subtotals(estimate, By::in))
            text += fmt::format("in,,{},,{},,,{},,,,\n", escapedCsv(sum.name), sum.groups, sum.watts);
    }
    for (const Side& side : estimate.sides) {
        for (const RailResult& rail : side.rails)
            text += fmt::format("rail,{},{},,,{},{},{},{},{},{},{}\n", side.process,
                                rail.inside.empty() ? "" : "in " + rail.inside, rail.name, rail.volts,
                                rail.dynamicWatts, rail.dynamicAmperes, csvNumber(rail.staticWatts),
                                csvNumber(rail.staticAmperes), csvNumber(rail.powerUpAmperes));
        text +=
            fmt::format("total,{},,,,,,{},,{},,\n", side.process, estimate.dynamicWatts, csvNumber(side.staticWatts));
    }
    for (const OwnTable& table : kOwnTables) {
        if (table.isThere(estimate))
            text += "\n" + table.text(estimate);
    }
    return text;
}

} // namespace zelm::host

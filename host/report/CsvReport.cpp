#include "host/base/Text.h"
#include "host/report/Report.h"

#include <fmt/format.h>

namespace zelm::host {

namespace {

std::string suppliesCsv(const Estimate& estimate)
{
    std::string text = "\nsupply,process,from,volts,load_a,max_a,powerup_a,output_w,efficiency,loss_w,input_w\n";
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

} // namespace

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
            text += fmt::format("rail,{},{},,,{},{},{},{},{},{},{}\n", side.process,
                                rail.inside.empty() ? "" : "in " + rail.inside, rail.name, rail.volts,
                                rail.dynamicWatts, rail.dynamicAmperes, csvNumber(rail.staticWatts),
                                csvNumber(rail.staticAmperes), csvNumber(rail.powerUpAmperes));
        text +=
            fmt::format("total,{},,,,,,{},,{},,\n", side.process, estimate.dynamicWatts, csvNumber(side.staticWatts));
    }
    return estimate.side().supplies ? text + suppliesCsv(estimate) : text;
}

} // namespace zelm::host

#include "host/base/Text.h"
#include "host/report/Report.h"
#include "host/report/SubtotalsReport.h"

#include <fmt/format.h>

namespace zelm::host {

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
    return text;
}

} // namespace zelm::host

#include "host/report/NetlistReport.h"

#include "host/base/Text.h"

#include <fmt/format.h>

namespace zelm::host {

namespace {

std::string countedText(const std::string& title, const std::string& fate, const std::vector<NetlistPlan::Counted>& all)
{
    if (all.empty())
        return "";
    TextTable table({title, "Count", fate});
    for (const NetlistPlan::Counted& counted : all)
        table.row({shown(abbreviated(counted.what)), std::to_string(counted.count), shown(counted.fate)});
    return "\n" + table.text();
}

} // namespace

std::string netlistText(const NetlistPlan& plan)
{
    std::string text = shown(fmt::format("{}: {} cells in {} instance{} of modules", plan.top, plan.cells,
                                         plan.instances, plan.instances == 1 ? "" : "s")) +
                       "\n";
    text += countedText("Cell", "Becomes", plan.mapped);
    text += countedText("In no group", "Why", plan.unmapped);
    text += countedText("Port", "Pads need an I/O standard (zelm standards)", plan.ports);
    std::string notes;
    for (const std::string& note : plan.notes)
        notes += shown(note) + "\n";
    return text + (notes.empty() ? "" : "\n" + notes);
}

} // namespace zelm::host

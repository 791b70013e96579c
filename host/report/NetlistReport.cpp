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

std::string propagationText(const Propagation& propagation, const RatedDesign& design)
{
    std::string text = fmt::format(
        "{} groups have toggle rates of the netlist, after {} rounds through its registers{}\n", design.groups,
        propagation.rounds,
        propagation.settled ? "" : fmt::format(", which haven't come to rest by {:.1g}", propagation.moved));
    if (!propagation.parts.empty()) {
        TextTable table({"In", "LUTs", "Not exact", "Share"});
        for (const Propagation::Part& part : propagation.parts)
            table.row({part.path.empty() ? "(top)" : shown(part.path), std::to_string(part.luts),
                       std::to_string(part.reconvergent),
                       fmt::format("{:.0f} %",
                                   100.0 * static_cast<double>(part.reconvergent) / static_cast<double>(part.luts))});
        text +=
            "\n" + table.text() + "Not exact: inputs of these LUTs hang on a common net, and count as independent\n";
    }
    for (const auto& [type, count] : propagation.guessed)
        text += shown(fmt::format("{} {}: taken to give random words, which change with an input", count, type)) + "\n";
    if (propagation.looped > 0)
        text += fmt::format("{} LUTs are in circles without a register\n", propagation.looped);
    for (const std::string& name : design.missing)
        text += shown(fmt::format("the design has no group \"{}\"", name)) + "\n";
    return text;
}

} // namespace zelm::host

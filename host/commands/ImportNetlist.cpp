#include "host/exchange/NetlistDesign.h"

#include "host/base/Files.h"
#include "host/base/Terminal.h"
#include "host/commands/Command.h"
#include "host/design/ResolvedDevice.h"
#include "host/report/NetlistReport.h"

#include <fmt/format.h>

namespace zelm::host {

namespace {

void checkPart(const std::optional<std::string>& part)
{
    if (!part)
        return;
    Design named;
    named.source.file = "--part";
    named.device.emplace();
    named.device->part = *part;
    static_cast<void>(resolve(named));
}

} // namespace

Action declareImportNetlist(Options& options)
{
    const std::string& file =
        options.required("netlist", "The netlist: JSON as Yosys writes it after synth -lut 6, memories and $mul kept");
    const std::optional<std::string>& top =
        options.value("--top", "MODULE", "The module to begin with; else the one that is marked so or no other holds");
    const std::vector<std::string>& clocks = options.list(
        "--clock", "NAME=FREQUENCY of a clock: clk=200MHz; repeat it for others, which else run at 200 MHz");
    const std::optional<std::string>& part =
        options.value("--part", "PART", "The design's part or device (zelm parts); else it has none");
    const std::optional<std::string>& in =
        options.value("--in", "PATH", "What the netlist stands in: datapath; else its top is the design");
    const unsigned& depth =
        options.count("--depth", "Levels of instances that are told apart; those below count in what holds them");
    const std::optional<std::string>& output =
        options.text("-o,--output", "Write the design to this file, and tell what became of the cells");
    return [&](Run& run) {
        if (output)
            refuseOverwriting({*output}, {file});
        checkPart(part);
        const Netlist netlist = readNetlist(file);
        const NetlistWishes wishes{clocks, part, in.value_or(""), depth};
        const NetlistPlan plan = plannedGroups(flattened(netlist, top), wishes);
        const std::string design = netlistDesign(plan, wishes);
        static_cast<void>(parseDesign(output.value_or("design"), design)); // a wrong path is told here
        if (output) {
            writeFile(*output, design);
            run.out += netlistText(plan);
            return kSuccess;
        }
        run.out += design;
        for (const NetlistPlan::Counted& counted : plan.unmapped)
            say(fmt::format("in no group: {} {} ({})", counted.count, counted.what, counted.fate));
        if (!plan.ports.empty())
            say(fmt::format("in no group: pads of {} port{}, which need an I/O standard (zelm standards)",
                            plan.ports.size(), plan.ports.size() == 1 ? "" : "s"));
        for (const std::string& note : plan.notes)
            say(note);
        return kSuccess;
    };
}

} // namespace zelm::host

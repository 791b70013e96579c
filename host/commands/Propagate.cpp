#include "host/exchange/Propagate.h"

#include "host/base/Error.h"
#include "host/base/Files.h"
#include "host/base/Terminal.h"
#include "host/commands/Command.h"
#include "host/design/Design.h"
#include "host/report/NetlistReport.h"

#include <fmt/format.h>

namespace zelm::host {

Action declarePropagate(Options& options)
{
    const std::string& file = options.required("netlist", "The netlist that the design was imported from (JSON)");
    const std::optional<std::string>& design =
        options.text("--design", "The design whose groups are given toggle rates");
    const std::vector<std::string>& inputs = options.list(
        "--input", "PORT=PROBABILITY,DENSITY: the share of cycles in which an input, or one bit of it, is 1, and in "
                   "which it changes: data=0.5,0.25, reset=0,0; repeat it for others, which else have 0.5,0.125");
    const std::optional<std::string>& top = options.value("--top", "MODULE", "As the netlist was imported with");
    const unsigned& depth = options.count("--depth", "As the netlist was imported with");
    const std::optional<std::string>& nets = options.text("--nets", "Write the activity of all named nets, as CSV");
    const std::optional<std::string>& output =
        options.text("-o,--output", "Write the design to this file, and tell where the rates aren't exact");
    return [&](Run& run) {
        if (!design)
            throw Error("propagate needs --design, the design that import netlist made of this netlist");
        std::vector<std::string> outputs;
        if (output)
            outputs.push_back(*output);
        if (nets)
            outputs.push_back(*nets);
        refuseOverwriting(outputs, {file});
        const Netlist netlist = readNetlist(file);
        const FlatNetlist flat = flattened(netlist, top);
        const Propagation propagation = propagated(flat, inputs);
        NetlistWishes wishes;
        wishes.depth = depth;
        const RatedDesign result = rated(*design, plannedGroups(flat, wishes), propagation);
        static_cast<void>(parseDesign(*design, result.text));
        if (nets)
            writeFile(*nets, netsCsv(flat, propagation));
        if (output) {
            writeFile(*output, result.text);
            run.out += propagationText(propagation, result);
        } else {
            run.out += result.text;
        }
        return kSuccess;
    };
}

} // namespace zelm::host

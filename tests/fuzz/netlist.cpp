// A netlist of synthesis: reading it, the groups that it makes, and what its nets do.

#include "Fuzz.h"

#include "host/exchange/NetlistDesign.h"
#include "host/exchange/Propagate.h"

using namespace zelm;

void zelm::fuzz::run(const std::uint8_t* bytes, std::size_t size)
{
    fuzz::useShippedData();
    fuzz::orError([&] {
        const host::Netlist netlist = host::parseNetlist(fuzz::textOf(bytes, size), "netlist.json");
        const host::FlatNetlist flat = host::flattened(netlist, std::nullopt);
        host::netlistDesign(host::plannedGroups(flat, {}), {});
        host::netsCsv(flat, host::propagated(flat, {}));
    });
}

#include "host/base/Error.h"
#include "host/commands/Command.h"

#include <fmt/format.h>

namespace zelm::host {

Action declareImportNetlist(Options& options)
{
    const std::string& netlist = options.required("netlist", "The netlist (JSON)");
    return [&](Run&) -> int { throw Error(fmt::format("{}: netlists can't be read yet", netlist)); };
}

} // namespace zelm::host

#include "host/base/Files.h"
#include "host/commands/Command.h"
#include "host/commands/NewDesign.h"
#include "host/report/LivePage.h"

namespace zelm::host {

Action declareLive(Options& options)
{
    const std::string& output = options.requiredValue("-o,--output", "FILE", "Write the page to this file");
    const std::optional<std::string>& part =
        options.value("--part", "PART", "An orderable part or a device (zelm parts); else one of middle size");
    return [&](Run&) {
        refuseOverwriting({output}, {});
        writeFile(output, livePage("design.json", newDesign("blank", part.value_or(kNewPart))));
        return kSuccess;
    };
}

} // namespace zelm::host

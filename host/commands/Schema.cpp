#include "host/design/Schema.h"

#include "host/base/Json.h"
#include "host/commands/Command.h"
#include "host/report/OutputSchema.h"

namespace zelm::host {

Action declareSchema(Options& options)
{
    const bool& output = options.flag("--output", "The schema of what the commands print with --json instead");
    return [&output](Run& run) {
        run.out += jsonText(output ? outputSchema() : designSchema());
        return kSuccess;
    };
}

} // namespace zelm::host

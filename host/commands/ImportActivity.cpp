#include "host/base/Error.h"
#include "host/base/Files.h"
#include "host/base/Json.h"
#include "host/base/Terminal.h"
#include "host/commands/Command.h"
#include "host/report/ActivityReport.h"

namespace zelm::host {

Action declareImportActivity(Options& options)
{
    const std::string& dump = options.required("dump", "What a simulation did (VCD or SAIF)");
    const std::optional<std::string>& design = options.text("--design", "The design whose groups it is of (JSON)");
    const std::optional<std::string>& scope =
        options.value("--scope", "SCOPE", "Where the design is in the dump, top.dut; else where most groups are");
    const std::optional<std::string>& map =
        options.text("--map", "Which scopes and signals groups are (JSON), where \"in\" doesn't tell");
    const std::optional<std::string>& from = options.value("--from", "TIME", "Count from then on: 10 us");
    const std::optional<std::string>& to = options.value("--to", "TIME", "Count until then");
    const std::optional<std::string>& output =
        options.text("-o,--output", "Write the design with its activity to this file");
    const bool& json = options.flag("--json", "Print what was set as JSON");
    return [&](Run& run) {
        if (!design)
            throw Error("--design is required");
        if (output) {
            std::vector<std::string> inputs{dump, *design};
            if (map)
                inputs.push_back(*map);
            refuseOverwriting({*output}, inputs);
        }
        const ActivityImport result = importActivity({dump, *design, scope, map, from, to});
        if (output)
            writeFile(*output, result.text);
        if (json || output)
            run.out += json ? jsonText(activityJson(result)) : activityTable(result);
        else {
            run.out += result.text;
            say(activityTable(result));
        }
        return kSuccess;
    };
}

} // namespace zelm::host

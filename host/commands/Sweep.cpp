#include "host/study/Sweep.h"

#include "host/base/Json.h"
#include "host/base/Terminal.h"
#include "host/commands/Command.h"
#include "host/report/SweepReport.h"

namespace zelm::host {

Action declareSweep(Options& options)
{
    const std::string& design = options.required("design", "The design file (JSON)");
    const std::vector<std::string>& variations =
        options.repeated("--vary", "PATH=FROM:TO:STEP or PATH=VALUE,VALUE,...: environment.ambientTemperature=0:80:10, "
                                   "groups[line buffers].inputs.NUM_BRAMS=64,128; repeat it for combinations");
    const bool& json = options.flag("--json", "Print JSON");
    const bool& csv = options.flag("--csv", "Print CSV");
    options.exclude("--csv", "--json");
    const bool& keepGoing =
        options.flag("--keep-going", "Warn of inputs that have no row in the data, and estimate the rest");
    return [&](Run& run) {
        const SweepFormat format = json ? SweepFormat::json : csv ? SweepFormat::csv : SweepFormat::table;
        run.out += sweepReport(sweep(design, variations, run.barAfter, keepGoing ? Gaps::warned : Gaps::refused),
                               format, Paint(takesColour(stdout)));
        return kSuccess;
    };
}

} // namespace zelm::host

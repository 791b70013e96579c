#include "host/study/Sweep.h"

#include "host/base/InOrder.h"
#include "host/base/Interrupt.h"
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
    const bool& strict = options.flag("--strict", "End with exit code 1 if there is a warning");
    const bool& keepGoing =
        options.flag("--keep-going", "Warn of inputs that have no row in the data, and estimate the rest");
    const unsigned& jobs = options.count("--jobs", "How many points at once; else as many as there are processors");
    return [&](Run& run) {
        const SweepFormat format = json ? SweepFormat::json : csv ? SweepFormat::csv : SweepFormat::table;
        const Sweep sweep(design, variations);
        const SweepRun how{threadsFor(jobs), run.barAfter, keepGoing ? Gaps::warned : Gaps::refused};
        const Interrupt interrupt;
        const std::size_t warned = printSweep(sweep, how, format, Paint(takesColour(stdout)), run.print);
        if (const int signal = Interrupt::signal())
            return kSignalled + signal;
        return strict && warned > 0 ? kBudgetBroken : kSuccess;
    };
}

} // namespace zelm::host

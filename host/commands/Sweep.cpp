#include "host/study/Sweep.h"

#include "host/base/Error.h"
#include "host/base/Files.h"
#include "host/base/InOrder.h"
#include "host/base/Interrupt.h"
#include "host/base/Json.h"
#include "host/base/Ranks.h"
#include "host/base/Terminal.h"
#include "host/commands/Command.h"
#include "host/commands/PointOptions.h"
#include "host/report/SweepReport.h"

#include <fmt/format.h>

namespace zelm::host {

namespace {

// Points for programs. The number that warn of something.
std::size_t streamPoints(const Sweep& sweep, const std::vector<std::string>& variations, SweepRun how,
                         const PointOptions& to, const Run& run)
{
    PointStudy study;
    study.form = to.form();
    if (to.hasFile() || study.form != PointForm::csv) {
        const Estimate first = sweep.first(how.gaps);
        if (how.columns.empty() && study.form != PointForm::csv)
            how.columns = usualColumns(first, sweep.variesProcess());
        study.about = std::make_shared<const Json>(sweepIdentity(sweep, variations, how, first));
    }
    study.columns = sweepPointColumns(sweep, how);
    study.points = sweep.points();
    const std::unique_ptr<PointOutput> output = to.output(study, run);
    const SweepEnd end = streamSweep(sweep, how, study, output.get());
    if (to.hasFile())
        run.print(fmt::format("{} points, {} with warnings\n", end.points, end.warned));
    return end.warned;
}

std::size_t printPoints(const Sweep& sweep, const SweepRun& how, const PointOptions& to, const Run& run)
{
    const SweepFormat format = to.json() ? SweepFormat::json : SweepFormat::table;
    const Paint paint(takesColour(stdout));
    if (!to.html())
        return printSweep(sweep, how, format, paint, run.print);
    SweepPage page(sweep, how);
    const std::size_t warned = printSweep(sweep, how, format, paint, run.print,
                                          [&](std::span<const SweepPoint> points) { page.take(points); });
    if (Interrupt::signal() == 0)
        writeFile(*to.html(), page.html());
    return warned;
}

} // namespace

Action declareSweep(Options& options)
{
    const std::string& design = options.required("design", "The design file (JSON)");
    const std::vector<std::string>& variations =
        options.repeated("--vary", "PATH=FROM:TO:STEP or PATH=VALUE,VALUE,...: environment.ambientTemperature=0:80:10, "
                                   "groups[line buffers].inputs.NUM_BRAMS=64,128; repeat it for combinations");
    const std::optional<std::string>& columns =
        options.value("--columns", "QUANTITY,...",
                      "What to tell of each point: total, junction@MAX, rail:VCCINT, group:NAME, group:NAME.CELL, "
                      "budget:NAME (what is left of it)");
    const PointOptions to(options, "Print CSV", "Write charts to this file");
    const bool& strict = options.flag("--strict", "End with exit code 1 if there is a warning");
    const bool& keepGoing =
        options.flag("--keep-going", "Warn of inputs that have no row in the data, and estimate the rest");
    const unsigned& jobs = options.count("--jobs", "How many points at once; else as many as there are processors");
    return [&, to](Run& run) {
        to.refuseContradictions(design);
        if (Ranks::here() && !to.streams())
            throw Error("over several ranks a sweep has its points as --csv, --jsonl, --hdf5 FILE or --resume FILE");
        const Sweep sweep(design, variations);
        SweepRun how{threadsFor(jobs), run.barAfter, keepGoing ? Gaps::warned : Gaps::refused};
        if (columns)
            how.columns = sweepColumns(*columns, sweep.first(how.gaps), sweep.variesProcess());
        const Interrupt interrupt;
        const std::size_t warned =
            to.streams() ? streamPoints(sweep, variations, how, to, run) : printPoints(sweep, how, to, run);
        if (const int signal = Interrupt::signal())
            return kSignalled + signal;
        return strict && warned > 0 ? kBudgetBroken : kSuccess;
    };
}

} // namespace zelm::host

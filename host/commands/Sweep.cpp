#include "host/study/Sweep.h"

#include "host/base/Error.h"
#include "host/base/Files.h"
#include "host/base/InOrder.h"
#include "host/base/Interrupt.h"
#include "host/base/Json.h"
#include "host/base/Ranks.h"
#include "host/base/Terminal.h"
#include "host/commands/Command.h"
#include "host/commands/PageFile.h"
#include "host/report/SweepReport.h"

#include <fmt/format.h>

namespace zelm::host {

namespace {

// What the command line asks for.
struct SweepWish {
    std::string design;
    std::vector<std::string> variations;
    std::optional<std::string> columns{};
    std::optional<std::string> html{};
    std::optional<std::string> hdf5{};
    std::optional<std::string> resume{};
    bool json = false;
    bool csv = false;
    bool jsonLines = false;
    SweepRun how{};

    // Points go to a file rather than to standard output.
    bool hasFile() const
    {
        return hdf5 || resume;
    }
};

void refuseContradictions(const SweepWish& wish)
{
    if (wish.html && (wish.csv || wish.jsonLines || wish.hasFile()))
        throw Error("--html goes with the table or --json: points of --csv, --jsonl, --hdf5 and --resume aren't kept");
    if (wish.hdf5 && (wish.csv || wish.jsonLines))
        throw Error("--hdf5 is a form of its own, beside --csv and --jsonl");
    if (wish.hasFile() && wish.json)
        throw Error("--json is for standard output; a file has its points as --csv, --jsonl or HDF5");
    if (wish.hdf5 && wish.resume && *wish.hdf5 != *wish.resume)
        throw Error("--hdf5 and --resume name two files, and points go to one");
    if (Ranks::here() && !(wish.csv || wish.jsonLines || wish.hasFile()))
        throw Error("over several ranks a sweep has its points as --csv, --jsonl, --hdf5 FILE or --resume FILE");
    checkPageFile(wish.html, {wish.design});
    checkPageFile(wish.resume ? wish.resume : wish.hdf5, {wish.design});
}

PointForm formOf(const SweepWish& wish)
{
    if (wish.csv)
        return PointForm::csv;
    if (wish.jsonLines)
        return PointForm::jsonLines;
    return wish.hdf5 ? PointForm::hdf5 : pointFormOf(*wish.resume);
}

std::unique_ptr<PointOutput> outputOf(const SweepWish& wish, const PointStudy& study, const Run& run)
{
    if (!writesOutput())
        return nullptr;
    if (wish.resume)
        return resumedPoints(*wish.resume, study);
    return wish.hdf5 ? hdf5Points(*wish.hdf5, study) : printedPoints(run.print);
}

// Points for programs. The number that warn of something.
std::size_t streamPoints(const Sweep& sweep, const SweepWish& wish, const Run& run)
{
    SweepRun how = wish.how;
    PointStudy study;
    study.form = formOf(wish);
    if (wish.hasFile() || study.form != PointForm::csv) {
        const Estimate first = sweep.first(how.gaps);
        if (how.columns.empty() && study.form != PointForm::csv)
            how.columns = usualColumns(first, sweep.variesProcess());
        study.about = std::make_shared<const Json>(sweepIdentity(sweep, wish.variations, how, first));
    }
    study.columns = sweepPointColumns(sweep, how);
    study.points = sweep.points();
    const std::unique_ptr<PointOutput> output = outputOf(wish, study, run);
    const SweepEnd end = streamSweep(sweep, how, study, output.get());
    if (wish.hasFile())
        run.print(fmt::format("{} points, {} with warnings\n", end.points, end.warned));
    return end.warned;
}

std::size_t printPoints(const Sweep& sweep, const SweepWish& wish, const Run& run)
{
    const SweepFormat format = wish.json ? SweepFormat::json : SweepFormat::table;
    const Paint paint(takesColour(stdout));
    if (!wish.html)
        return printSweep(sweep, wish.how, format, paint, run.print);
    SweepPage page(sweep, wish.how);
    const std::size_t warned = printSweep(sweep, wish.how, format, paint, run.print,
                                          [&](std::span<const SweepPoint> points) { page.take(points); });
    if (Interrupt::signal() == 0)
        writeFile(*wish.html, page.html());
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
    const bool& json = options.flag("--json", "Print JSON");
    const bool& csv = options.flag("--csv", "Print CSV");
    const bool& jsonLines = options.flag("--jsonl", "Print JSON lines, an object for each point");
    options.exclude("--csv", "--json");
    options.exclude("--jsonl", "--json");
    options.exclude("--jsonl", "--csv");
    const std::optional<std::string>& html = options.text("--html", "Write charts to this file");
    const std::optional<std::string>& hdf5 = options.text("--hdf5", "Write the points to this file as HDF5");
    const std::optional<std::string>& resume = options.text(
        "--resume", "Write the points to this file (.csv, .jsonl or .h5), going on where a run that was killed ended");
    const bool& strict = options.flag("--strict", "End with exit code 1 if there is a warning");
    const bool& keepGoing =
        options.flag("--keep-going", "Warn of inputs that have no row in the data, and estimate the rest");
    const unsigned& jobs = options.count("--jobs", "How many points at once; else as many as there are processors");
    return [&](Run& run) {
        SweepWish wish{design, variations, columns, html, hdf5, resume, json, csv, jsonLines};
        refuseContradictions(wish);
        const Sweep sweep(design, variations);
        wish.how.jobs = threadsFor(jobs);
        wish.how.barAfter = run.barAfter;
        wish.how.gaps = keepGoing ? Gaps::warned : Gaps::refused;
        if (columns)
            wish.how.columns = sweepColumns(*columns, sweep.first(wish.how.gaps), sweep.variesProcess());
        const Interrupt interrupt;
        const bool streams = csv || jsonLines || wish.hasFile();
        const std::size_t warned = streams ? streamPoints(sweep, wish, run) : printPoints(sweep, wish, run);
        if (const int signal = Interrupt::signal())
            return kSignalled + signal;
        return strict && warned > 0 ? kBudgetBroken : kSuccess;
    };
}

} // namespace zelm::host

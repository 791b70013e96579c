#include "host/Calc.h"
#include "host/Catalogue.h"
#include "host/CheckData.h"
#include "host/DataDirectory.h"
#include "host/Error.h"
#include "host/Estimate.h"
#include "host/HtmlReport.h"
#include "host/IoBank.h"
#include "host/Json.h"
#include "host/Report.h"
#include "host/Schema.h"
#include "host/Sweep.h"
#include "host/Terminal.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include <cstdio>
#include <fstream>
#include <functional>
#include <stdexcept>

namespace {

using namespace zelm::host;

constexpr int kSuccess = 0;
constexpr int kBudgetBroken = 1;
constexpr int kUserError = 2;

void writeFile(const std::string& path, const std::string& text)
{
    std::ofstream file(path, std::ios::binary);
    if (!(file << text) || !file.flush())
        throw Error(fmt::format("{}: cannot be written", path));
}

struct EstimateOptions {
    std::string design;
    bool json = false;
    bool csv = false;
    bool check = false;
    std::string html;
    std::string junit;
};

int runEstimate(const EstimateOptions& options, bool verbose, std::string& out)
{
    const bool drawn = options.json || !options.html.empty();
    const Estimate result = estimate(readDesign(options.design), drawn ? Curves::drawn : Curves::none);
    if (options.json)
        out += jsonReport(result).dump(2) + "\n";
    else if (options.csv)
        out += csvReport(result);
    else
        out += textReport(result, verbose, Paint(takesColour(stdout)));
    if (!options.html.empty())
        writeFile(options.html, htmlReport(result));
    if (!options.junit.empty())
        writeFile(options.junit, junitReport(result));
    if (options.json || options.csv) {
        for (const std::string& warning : result.warnings)
            fmt::print(stderr, "zelm: warning: {}\n", warning);
    }
    if (options.check && result.budgetBroken()) {
        for (const BudgetResult& budget : result.budgets) {
            if (budget.broken())
                fmt::print(stderr, "zelm: budget broken: {} is {:.4g} {}, the limit is {:g} {}\n", budget.name,
                           budget.actual, budget.unit, budget.limit, budget.unit);
        }
        return kBudgetBroken;
    }
    return kSuccess;
}

int run(int argc, char** argv)
{
    CLI::App app("Estimates the power of designs for Orvane devices.", "zelm");
    app.require_subcommand(1);
    app.set_version_flag("--version", ZELM_VERSION);
    app.fallthrough();
    std::string dataDirectory;
    bool verbose = false;
    app.add_option(
        "--datadir", dataDirectory,
        "Directory (or ':'-separated list) with powercfg/orvane/*.cfg; else QTA_DATADIR, else the shipped data");
    app.add_flag("-v,--verbose", verbose, "Say more: which data, every input, what was carried where");

    std::string out;
    std::function<int()> action;

    EstimateOptions options;
    CLI::App* estimateCommand = app.add_subcommand("estimate", "Estimate a design");
    estimateCommand->add_option("design", options.design, "The design file (JSON)")->required();
    CLI::Option* json = estimateCommand->add_flag("--json", options.json, "Print JSON");
    estimateCommand->add_flag("--csv", options.csv, "Print CSV")->excludes(json);
    estimateCommand->add_option("--html", options.html, "Write a self-contained HTML report to this file");
    estimateCommand->add_flag("--check", options.check, "End with exit code 1 if a budget is broken");
    estimateCommand->add_option("--junit", options.junit, "Write the budgets as JUnit XML to this file");
    estimateCommand->callback([&] { action = [&] { return runEstimate(options, verbose, out); }; });

    bool asJson = false;
    bool asCsv = false;
    std::string blockName;
    const auto show = [&](std::function<std::string()> text) {
        action = [&out, text = std::move(text)] {
            out += text();
            return kSuccess;
        };
    };

    std::string sweptDesign;
    std::vector<std::string> variations;
    CLI::App* sweepCommand = app.add_subcommand("sweep", "Estimate a design over ranges of its values");
    sweepCommand->add_option("design", sweptDesign, "The design file (JSON)")->required();
    sweepCommand
        ->add_option("--vary", variations,
                     "PATH=FROM:TO:STEP or PATH=VALUE,VALUE,...: environment.ambientTemperature=0:80:10, "
                     "groups[line buffers].inputs.NUM_BRAMS=64,128; repeat it for combinations")
        ->required()
        ->allow_extra_args(false);
    CLI::Option* sweepJson = sweepCommand->add_flag("--json", asJson, "Print JSON");
    sweepCommand->add_flag("--csv", asCsv, "Print CSV")->excludes(sweepJson);
    sweepCommand->callback([&] {
        show([&] {
            return sweep(sweptDesign, variations,
                         asJson  ? SweepFormat::json
                         : asCsv ? SweepFormat::csv
                                 : SweepFormat::table);
        });
    });

    CLI::App* blocksCommand = app.add_subcommand("blocks", "List the resource kinds");
    blocksCommand->add_flag("--json", asJson, "Print JSON");
    blocksCommand->callback([&] { show([&] { return listBlocks(asJson); }); });

    CLI::App* cellsCommand = app.add_subcommand("cells", "List the cells of a block");
    cellsCommand->add_option("block", blockName, "Block name")->required();
    cellsCommand->add_flag("--json", asJson, "Print JSON");
    cellsCommand->callback([&] { show([&] { return listCells(blockName, asJson); }); });

    std::vector<std::string> assignments;
    bool bits = false;
    CLI::App* calcCommand = app.add_subcommand("calc", "Calculate one block and print all its cells");
    calcCommand->add_option("block", blockName, "Block name")->required();
    calcCommand->add_option("inputs", assignments, "Inputs as CELL=VALUE");
    calcCommand->add_flag("--bits", bits, "Print floats as their binary32 bits");
    calcCommand->add_flag("--json", asJson, "Print JSON");
    calcCommand->callback([&] { show([&] { return calc(blockName, assignments, bits, asJson); }); });

    CLI::App* partsCommand = app.add_subcommand("parts", "List devices, packages, grades and resources");
    partsCommand->add_flag("--json", asJson, "Print JSON");
    partsCommand->callback([&] { show([&] { return listParts(asJson); }); });

    CLI::App* standardsCommand = app.add_subcommand("standards", "List I/O standards by kind of bank");
    standardsCommand->add_flag("--json", asJson, "Print JSON");
    standardsCommand->callback([&] { show([&] { return listStandards(asJson); }); });

    CLI::App* schemaCommand = app.add_subcommand("schema", "Print the JSON Schema of design files");
    schemaCommand->callback([&] { show([] { return designSchema().dump(2) + "\n"; }); });

    CLI::App* checkCommand = app.add_subcommand("check-data", "Tell whether a data directory is whole");
    checkCommand->add_option("directory", dataDirectory, "The data directory; else the one in use");
    checkCommand->callback([&] {
        action = [&out] {
            const DataCheck check = checkData();
            out += check.text;
            return check.whole ? kSuccess : kUserError;
        };
    });

    std::string docsDirectory;
    CLI::App* docsCommand = app.add_subcommand("docs", "Write the reference of all cells as Markdown");
    docsCommand->add_option("directory", docsDirectory, "Where to write it")->required();
    docsCommand->callback([&] {
        action = [&] {
            writeReference(docsDirectory);
            return kSuccess;
        };
    });

    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        const int code = app.exit(error);
        return code == 0 ? kSuccess : kUserError;
    }

    const std::string origin = chooseDataDirectory(dataDirectory);
    if (verbose)
        fmt::print(stderr, "{}\n", origin);
    const int code = action();
    // Everything is said at once, so that an error leaves no half of a report.
    if (std::fwrite(out.data(), 1, out.size(), stdout) != out.size() || std::fflush(stdout) != 0)
        throw Error("standard output cannot be written");
    return code;
}

} // namespace

int main(int argc, char** argv)
{
    try {
        return run(argc, argv);
    } catch (const std::exception& error) {
        fmt::print(stderr, "{} {}\n", Paint(takesColour(stderr)).bad("zelm:"), error.what());
        return kUserError;
    }
}

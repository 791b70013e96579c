#include "host/estimate/Estimate.h"

#include "host/base/Error.h"
#include "host/base/Json.h"
#include "host/base/Terminal.h"
#include "host/commands/Command.h"
#include "host/report/Report.h"

#include <fmt/format.h>

#include <cstdio>
#include <fstream>

namespace zelm::host {

namespace {

void writeFile(const std::string& path, const std::string& text)
{
    std::ofstream file(path, std::ios::binary);
    if (!(file << text) || !file.flush())
        throw Error(fmt::format("{}: cannot be written", path));
}

void sayBrokenBudgets(const Estimate& estimate)
{
    for (const BudgetResult& budget : estimate.budgets) {
        if (budget.broken())
            fmt::print(stderr, "zelm: budget broken: {}\n", budget.words());
    }
}

} // namespace

Action declareEstimate(Options& options)
{
    const std::string& design = options.required("design", "The design file (JSON)");
    const bool& json = options.flag("--json", "Print JSON");
    const bool& csv = options.flag("--csv", "Print CSV");
    options.exclude("--csv", "--json");
    const std::string& html = options.text("--html", "Write a self-contained HTML report to this file");
    const bool& check = options.flag("--check", "End with exit code 1 if a budget is broken");
    const bool& strict = options.flag("--strict", "End with exit code 1 if there is a warning");
    const bool& keepGoing =
        options.flag("--keep-going", "Warn of inputs that have no row in the data, and estimate the rest");
    const std::string& junit = options.text("--junit", "Write the budgets as JUnit XML to this file");
    return [&](Run& run) {
        const bool drawn = json || !html.empty();
        const Estimate result = estimate(readDesign(design), drawn ? Curves::drawn : Curves::none,
                                         keepGoing ? Gaps::warned : Gaps::refused);
        run.out += json  ? jsonText(jsonReport(result))
                   : csv ? csvReport(result)
                         : textReport(result, run.verbose, Paint(takesColour(stdout)));
        if (!html.empty())
            writeFile(html, htmlReport(result));
        if (!junit.empty())
            writeFile(junit, junitReport(result));
        if (json || csv) {
            for (const std::string& warning : result.warnings)
                fmt::print(stderr, "zelm: warning: {}\n", warning);
        }
        const bool broken = check && result.budgetBroken();
        if (broken)
            sayBrokenBudgets(result);
        return broken || (strict && !result.warnings.empty()) ? kBudgetBroken : kSuccess;
    };
}

} // namespace zelm::host

#include "host/estimate/Estimate.h"

#include "host/estimate/Modes.h"

#include "host/base/Files.h"
#include "host/base/Json.h"
#include "host/base/Terminal.h"
#include "host/blocks/DataLines.h"
#include "host/commands/Command.h"
#include "host/report/Report.h"

#include <fmt/format.h>

#include <cstdio>

namespace zelm::host {

namespace {

// The files to write, unless one of them is a file that the estimate reads.
void checkReports(const std::string& file, const Design& design,
                  const std::vector<const std::optional<std::string>*>& reports)
{
    std::vector<std::string> outputs;
    for (const std::optional<std::string>* report : reports) {
        if (*report)
            outputs.push_back(**report);
    }
    if (outputs.empty())
        return;
    std::vector<std::string> inputs = design.source.includedFiles();
    inputs.push_back(file);
    for (const Block& block : blocks())
        inputs.push_back(dataPath(block.dataFile()));
    refuseOverwriting(outputs, inputs);
}

void sayBrokenBudgets(const Estimate& estimate)
{
    for (const BudgetResult& budget : estimate.budgets) {
        if (budget.broken())
            complain("budget broken: " + budget.words());
    }
}

} // namespace

Action declareEstimate(Options& options)
{
    const std::string& design = options.required("design", "The design file (JSON)");
    const bool& json = options.flag("--json", "Print JSON");
    const bool& csv = options.flag("--csv", "Print CSV");
    options.exclude("--csv", "--json");
    const std::optional<std::string>& html = options.text("--html", "Write a self-contained HTML report to this file");
    const bool& check = options.flag("--check", "End with exit code 1 if a budget is broken");
    const bool& strict = options.flag("--strict", "End with exit code 1 if there is a warning");
    const bool& keepGoing =
        options.flag("--keep-going", "Warn of inputs that have no row in the data, and estimate the rest");
    const bool& startUp =
        options.flag("--start-up", "Add how the junction warms up from ambient; needs thermal stages");
    const std::optional<std::string>& junit = options.text("--junit", "Write the budgets as JUnit XML to this file");
    return [&](Run& run) {
        const Design read = readDesign(design);
        checkReports(design, read, {&html, &junit});
        const bool drawn = json || html;
        Estimate result =
            estimate(read, drawn ? Curves::drawn : Curves::none, keepGoing ? Gaps::warned : Gaps::refused);
        if (startUp)
            addStartUp(result);
        run.out += json  ? jsonText(jsonReport(result))
                   : csv ? csvReport(result)
                         : textReport(result, run.verbose, Paint(takesColour(stdout)));
        if (html)
            writeFile(*html, htmlReport(result));
        if (junit)
            writeFile(*junit, junitReport(result));
        if (json || csv) {
            for (const std::string& warning : result.warnings)
                complain("warning: " + warning);
        }
        const bool broken = check && result.budgetBroken();
        if (broken)
            sayBrokenBudgets(result);
        return broken || (strict && !result.warnings.empty()) ? kBudgetBroken : kSuccess;
    };
}

} // namespace zelm::host

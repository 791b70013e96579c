#include "host/estimate/Estimate.h"

#include "host/base/Error.h"
#include "host/base/Files.h"
#include "host/base/Json.h"
#include "host/base/Terminal.h"
#include "host/base/Text.h"
#include "host/base/Units.h"
#include "host/blocks/DataLines.h"
#include "host/commands/Command.h"
#include "host/estimate/Modes.h"
#include "host/report/LivePage.h"
#include "host/report/Report.h"
#include "host/report/SubtotalsReport.h"
#include "host/report/XlsxReport.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
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

std::optional<SubtotalsWish> wishOf(const std::optional<std::string>& by, const std::optional<std::string>& top,
                                    const std::optional<std::string>& sort)
{
    if (!by) {
        if (top || sort)
            throw Error(fmt::format("{} needs --by", top ? "--top" : "--sort"));
        return std::nullopt;
    }
    SubtotalsWish wish{byWord(*by)};
    if (top) {
        const std::optional<double> count = plainNumber(*top);
        constexpr double most = 1e9;
        if (!count || *count < 1.0 || *count > most || *count != std::floor(*count))
            throw Error(fmt::format("--top {}: expected a whole number from 1", abbreviated(*top)));
        wish.top = static_cast<std::size_t>(*count);
    }
    if (sort) {
        const std::vector<std::string> known{"watts", "groups", "name", "design"};
        if (std::find(known.begin(), known.end(), *sort) == known.end())
            throw Error(
                fmt::format("--sort {}: expected {}{}", abbreviated(*sort), orList(known), suggestion(*sort, known)));
        wish.sort = *sort == "design" ? "" : *sort;
    } else if (wish.by == By::in && !top)
        wish.sort = ""; // levels below each other
    return wish;
}

std::string nameOf(const std::string& file)
{
    return file == kStandardInput ? "standard input" : file;
}

// A page holds the text of one file.
Design designForPage(const std::string& file, const std::string& text)
{
    Design design = parseDesign(nameOf(file), text);
    if (!design.source.includedFiles().empty())
        throw Error(fmt::format("--live: {} includes other files, and the page holds one", file));
    return design;
}

std::string subtotalsReport(const Estimate& estimate, const SubtotalsWish& wish, bool json, bool csv)
{
    return json  ? jsonText(subtotalsJson(estimate, wish))
           : csv ? subtotalsCsv(estimate, wish)
                 : subtotalsTable(estimate, wish);
}

} // namespace

Action declareEstimate(Options& options)
{
    const std::string& design = options.required("design", "The design file (JSON)");
    const bool& json = options.flag("--json", "Print JSON");
    const std::string& csv =
        options.flagOf("--csv", csvTables(), "Print CSV; with the name of a table, that table alone");
    options.exclude("--csv", "--json");
    const std::optional<std::string>& html = options.text("--html", "Write a self-contained HTML report to this file");
    const std::optional<std::string>& live =
        options.text("--live", "Write a page that estimates what is changed in it to this file");
    const std::optional<std::string>& xlsx = options.text("--xlsx", "Write a workbook with live formulas to this file");
    const bool& check = options.flag("--check", "End with exit code 1 if a budget is broken");
    const bool& strict = options.flag("--strict", "End with exit code 1 if there is a warning");
    const bool& keepGoing =
        options.flag("--keep-going", "Warn of inputs that have no row in the data, and estimate the rest");
    const bool& startUp =
        options.flag("--start-up", "Add how the junction warms up from ambient; needs thermal stages");
    const std::optional<std::string>& junit = options.text("--junit", "Write the budgets as JUnit XML to this file");
    const std::optional<std::string>& by =
        options.value("--by", "WHAT", "Only what groups add up to, by in (the hierarchy), block, rail or clock");
    const std::optional<std::string>& top = options.value("--top", "COUNT", "With --by, the first so many");
    const std::optional<std::string>& sort =
        options.value("--sort", "ORDER", "With --by, by watts, groups, name or design; else by watts");
    return [&](Run& run) {
        const std::optional<SubtotalsWish> wish = wishOf(by, top, sort);
        const std::string text = live || html ? readFile(design) : std::string();
        const Design read = live   ? designForPage(design, text)
                            : html ? parseDesign(nameOf(design), text)
                                   : readDesign(design);
        checkReports(design, read, {&html, &live, &xlsx, &junit});
        const bool drawn = json || html;
        Estimate result =
            estimate(read, drawn ? Curves::drawn : Curves::none, keepGoing ? Gaps::warned : Gaps::refused);
        if (startUp)
            addStartUp(result);
        run.out += wish           ? subtotalsReport(result, *wish, json, !csv.empty())
                   : json         ? jsonText(jsonReport(result))
                   : !csv.empty() ? (csv == "true" ? csvReport(result) : csvTable(result, csv))
                                  : textReport(result, run.verbose, Paint(takesColour(stdout)));
        if (html)
            writeFile(*html, htmlReport(result, provenanceOf(read, design, text)));
        if (live)
            writeFile(*live, livePage(design == kStandardInput ? "design.json" : design, text));
        if (xlsx)
            writeFile(*xlsx, xlsxReport(result));
        if (junit)
            writeFile(*junit, junitReport(result));
        if (json || !csv.empty()) {
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

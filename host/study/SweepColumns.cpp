#include "host/study/SweepColumns.h"

#include "host/base/Error.h"
#include "host/base/Text.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <span>
#include <string_view>

namespace zelm::host {

namespace {

constexpr std::string_view kBudget = "budget:";

bool hasSide(const Estimate& estimate, std::string_view process)
{
    return !process.empty() && std::any_of(estimate.sides.begin(), estimate.sides.end(),
                                           [&](const Side& side) { return side.process == process; });
}

// Degrees are C wherever quantities name them.
std::string budgetUnit(const BudgetResult& budget)
{
    return budget.unit == "degrees" ? "C" : budget.unit;
}

SweepColumn budgetColumn(const std::string& text, const Estimate& estimate, bool variesProcess)
{
    SweepColumn column;
    column.budget = text.substr(kBudget.size());
    if (const std::size_t at = column.budget.rfind('@');
        at != std::string::npos && hasSide(estimate, std::string_view(column.budget).substr(at + 1))) {
        column.process = column.budget.substr(at + 1);
        column.budget.resize(at);
    }
    const BudgetResult* budget = estimate.budget(column.budget);
    if (!budget) {
        std::vector<std::string> known;
        for (const BudgetResult& each : estimate.budgets)
            known.push_back(each.name);
        throw Error(known.empty()
                        ? fmt::format("{}: the design has no budgets", abbreviated(text))
                        : fmt::format("{}: there is no budget {}{}; there are {}", abbreviated(text),
                                      abbreviated(column.budget), suggestion(column.budget, known), orList(known)));
    }
    column.ofOwnProcess = variesProcess && column.process.empty();
    column.name = text;
    column.unit = budgetUnit(*budget);
    return column;
}

SweepColumn readColumn(const std::string& text, const Estimate& estimate, bool variesProcess)
{
    if (text.starts_with(kBudget))
        return budgetColumn(text, estimate, variesProcess);
    SweepColumn column;
    column.quantity = namedQuantity(text, estimate);
    column.unit = column.quantity.unit();
    column.name = column.quantity.name();
    if (variesProcess && column.name != text) { // which says no side
        column.ofOwnProcess = true;
        column.name = text;
    }
    return column;
}

// The next column of a list. Names of groups and budgets may have commas: the longest that is known is meant.
SweepColumn nextColumn(std::span<const std::string>& words, const Estimate& estimate, bool variesProcess)
{
    const std::string first = words.front();
    const bool mayGoOn = first.starts_with("group:") || first.starts_with(kBudget);
    for (std::size_t count = mayGoOn ? words.size() : 1; count > 1; --count) {
        try {
            SweepColumn column =
                readColumn(fmt::format("{}", fmt::join(words.first(count), ",")), estimate, variesProcess);
            words = words.subspan(count);
            return column;
        } catch (const Error&) {
            continue; // with a word less
        }
    }
    words = words.subspan(1);
    return readColumn(first, estimate, variesProcess);
}

double leftOf(const SweepColumn& column, const Estimate& estimate)
{
    const double none = std::numeric_limits<double>::quiet_NaN();
    const BudgetResult* budget = estimate.budget(column.budget);
    if (!budget)
        return none;
    const double own = budget->limit - budget->actual;
    const double other = budget->otherActual ? budget->limit - *budget->otherActual : none;
    if (column.ofOwnProcess || !budget->otherActual)
        return own;
    const std::string& at = column.process.empty() ? budget->judgedAt : column.process;
    if (!at.empty())
        return at == budget->process ? own : other;
    return std::isnan(own) || std::isnan(other) ? none : std::min(own, other);
}

} // namespace

std::vector<SweepColumn> sweepColumns(const std::string& text, const Estimate& estimate, bool variesProcess)
{
    const std::vector<std::string> words = split(text, ',');
    std::vector<SweepColumn> columns;
    for (std::span<const std::string> rest = words; !rest.empty();) {
        if (rest.front().empty())
            throw Error(fmt::format("--columns {}: a name is empty", abbreviated(text, 200)));
        try {
            columns.push_back(nextColumn(rest, estimate, variesProcess));
        } catch (const Error& error) {
            throw Error(fmt::format("--columns: {}", error.what()));
        }
        const auto isSame = [&](const SweepColumn& column) { return column.name == columns.back().name; };
        if (std::find_if(columns.begin(), columns.end(), isSame) != columns.end() - 1)
            throw Error(fmt::format("--columns: {} stands twice", abbreviated(columns.back().name, 200)));
    }
    return columns;
}

std::vector<SweepColumn> usualColumns(const Estimate& estimate, bool variesProcess)
{
    std::vector<std::string> names{"dynamic"};
    for (const Side& side : estimate.sides) {
        const std::string at = variesProcess || side.process.empty() ? "" : "@" + side.process;
        if (!side.process.empty())
            names.push_back("static" + at);
        names.push_back("total" + at);
        if (!side.process.empty() || estimate.design.environment.junction)
            names.push_back("junction" + at);
        if (variesProcess)
            break;
    }
    std::vector<SweepColumn> columns;
    for (const std::string& name : names)
        columns.push_back(readColumn(name, estimate, variesProcess));
    for (const BudgetResult& budget : estimate.budgets)
        columns.push_back(budgetColumn(fmt::format("{}{}", kBudget, budget.name), estimate, variesProcess));
    return columns;
}

double valueOf(const SweepColumn& column, const Estimate& estimate)
{
    if (!column.budget.empty())
        return leftOf(column, estimate);
    if (!column.ofOwnProcess)
        return valueOf(column.quantity, estimate);
    NamedQuantity own = column.quantity;
    own.process = estimate.side().process;
    return valueOf(own, estimate);
}

std::vector<SweepBudget> sweepBudgets(const Estimate& estimate, bool variesProcess)
{
    std::vector<SweepBudget> all;
    for (const BudgetResult& budget : estimate.budgets) {
        const auto counts = [&](const std::string& process) {
            return variesProcess ? process == budget.process : budget.judgedAt.empty() || budget.judgedAt == process;
        };
        if (counts(budget.process))
            all.push_back({budget.name, budget.process, budgetUnit(budget), budget.limit, budget.actual});
        if (budget.otherActual && counts(budget.otherProcess))
            all.push_back({budget.name, budget.otherProcess, budgetUnit(budget), budget.limit, *budget.otherActual});
    }
    return all;
}

} // namespace zelm::host

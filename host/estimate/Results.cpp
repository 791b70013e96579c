#include "host/estimate/Results.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

namespace zelm::host {

std::string_view originWord(Origin origin)
{
    switch (origin) {
    case Origin::design:
        return "design";
    case Origin::rails:
        return "rails";
    case Origin::device:
        return "device";
    case Origin::carried:
        return "carried";
    case Origin::byDefault:
        break;
    }
    return "default";
}

std::string Carried::End::text() const
{
    return cell.empty() ? *name : fmt::format("{}.{}", *name, cell);
}

const RailResult* Side::rail(std::string_view name) const
{
    const auto found = std::find_if(rails.begin(), rails.end(), [&](const RailResult& r) { return r.name == name; });
    return found == rails.end() ? nullptr : &*found;
}

bool BudgetResult::brokenAt(std::string_view side) const
{
    if (!judgedAt.empty() && judgedAt != side)
        return false;
    return side == process ? !(actual <= limit) : !(otherActual.value_or(limit) <= limit);
}

std::string BudgetResult::verdict() const
{
    if (!otherActual || (actual <= limit) == (*otherActual <= limit))
        return broken() ? "BROKEN" : "kept";
    const auto at = [&](const std::string& side) {
        return fmt::format("{} at {}", brokenAt(side) ? "BROKEN" : "kept", side);
    };
    if (!judgedAt.empty())
        return at(judgedAt);
    return brokenAt(process) ? at(otherProcess) + ", " + at(process) : at(process) + ", " + at(otherProcess);
}

std::string BudgetResult::words() const
{
    const bool otherCounts = otherActual && (judgedAt.empty() || judgedAt == otherProcess);
    const bool ownCounts = judgedAt.empty() || judgedAt == process || !otherActual;
    const bool other = otherCounts && (!ownCounts || (!std::isnan(actual) && !(*otherActual <= actual)));
    const double worst = other ? *otherActual : actual;
    const std::string side = otherActual ? fmt::format(" at {}", other ? otherProcess : process) : "";
    if (std::isnan(worst))
        return fmt::format("{}: none, thermal runaway{}, so the limit of {:g} {} can't hold", name, side, limit, unit);
    std::string text =
        fmt::format("{}: {:.4g} {}{}, which is {:.4g} {} {} the limit of {:g} {}", name, worst, unit, side,
                    std::fabs(limit - worst), unit, worst <= limit ? "below" : "above", limit, unit);
    if (ownCounts && otherCounts && brokenAt(process) != brokenAt(otherProcess))
        text += "; " + verdict();
    return text;
}

const BudgetResult* Estimate::budget(std::string_view name) const
{
    const auto found =
        std::find_if(budgets.begin(), budgets.end(), [&](const BudgetResult& budget) { return budget.name == name; });
    return found == budgets.end() ? nullptr : &*found;
}

bool Estimate::budgetBroken() const
{
    return std::any_of(budgets.begin(), budgets.end(), [](const BudgetResult& budget) { return budget.broken(); });
}

} // namespace zelm::host

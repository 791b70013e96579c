#include "host/estimate/Results.h"

#include <algorithm>

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

const RailResult* Side::rail(std::string_view name) const
{
    const auto found = std::find_if(rails.begin(), rails.end(), [&](const RailResult& r) { return r.name == name; });
    return found == rails.end() ? nullptr : &*found;
}

bool Estimate::budgetBroken() const
{
    return std::any_of(budgets.begin(), budgets.end(), [](const BudgetResult& budget) { return budget.broken(); });
}

} // namespace zelm::host

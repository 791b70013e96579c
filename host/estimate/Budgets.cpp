#include "host/estimate/Budgets.h"

#include "host/estimate/Modes.h"

namespace zelm::host {

namespace {

double amperesOf(const Side& side, const std::string& rail)
{
    const RailResult* result = side.rail(rail);
    return result ? result->amperes() : 0.0;
}

// Regulators have limits of their own kind; here are those of the supplies.
template <class Add>
void addSupplyLimits(const Design& design, const Add& add)
{
    for (const Supply& supply : design.supplies.all) {
        if (!supply.maxCurrent || design.regulators.contains(supply.name))
            continue;
        const std::string& name = supply.name;
        add("supply " + name, *supply.maxCurrent, "A",
            [&](const Side& side) { return side.supplies->find(name)->loadAmperes; });
        if (design.device)
            add("power-up of supply " + name, *supply.maxCurrent, "A",
                [&](const Side& side) { return side.supplies->find(name)->powerUpAmperes; });
    }
}

} // namespace

void checkBudgets(Estimate& estimate)
{
    const Budgets& budgets = estimate.design.budgets;
    const std::vector<Side> sides = worstMoments(estimate);
    const auto add = [&](const std::string& name, double limit, const char* unit, const auto& actual) {
        BudgetResult result{name, limit, actual(sides.front()), unit, std::nullopt, sides.front().process};
        if (sides.size() > 1) {
            result.judgedAt = budgets.judgedAt;
            result.otherActual = actual(sides[1]);
            result.otherProcess = sides[1].process;
        }
        estimate.budgets.push_back(std::move(result));
    };
    if (budgets.totalPower)
        add("total power", *budgets.totalPower, "W", [](const Side& side) { return side.totalWatts; });
    if (budgets.junction)
        add("junction temperature", *budgets.junction, "degrees", [](const Side& side) { return side.junction; });
    const auto addCurrents = [&](const char* what, const std::map<std::string, double>& limits) {
        for (const auto& limit : limits)
            add(what + limit.first, limit.second, "A", [&](const Side& side) { return amperesOf(side, limit.first); });
    };
    addCurrents("current of ", budgets.rails);
    addCurrents("regulator of ", estimate.design.regulators);
    addSupplyLimits(estimate.design, add);
    if (estimate.design.environment.junctionLimit)
        add("junction limit", *estimate.design.environment.junctionLimit, "degrees",
            [](const Side& side) { return side.junction; });
}

} // namespace zelm::host

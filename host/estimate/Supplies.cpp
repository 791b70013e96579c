#include "host/estimate/Supplies.h"

#include "host/base/Error.h"
#include "host/base/Text.h"
#include "host/blocks/Rails.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <cmath>
#include <set>

namespace zelm::host {

namespace {

// The supply that feeds a rail: the one that names it, else that of the rail whose current holds this rail's.
const Supply* supplyOf(const Supplies& supplies, const std::string& rail)
{
    if (const Supply* own = supplies.feeding(rail))
        return own;
    const std::string holder = railHolding(rail);
    return holder.empty() ? nullptr : supplies.feeding(holder);
}

// Amperes and watts that each supply delivers, its supplies below it included.
class Loads {
public:
    Loads(const Supplies& supplies, const std::vector<SupplyLoad>& loads) : m_supplies(&supplies)
    {
        for (const Supply& supply : supplies.all) {
            SupplyResult result;
            result.name = supply.name;
            result.from = supply.from;
            result.maxAmperes = supply.maxCurrent;
            result.volts = supply.volts.value_or(0.0);
            m_tree.supplies.push_back(std::move(result));
        }
        for (const SupplyLoad& load : loads) {
            const Supply* supply = supplies.feeding(load.rail);
            if (supply && resultOf(*supply).volts == 0.0)
                resultOf(*supply).volts = load.volts;
        }
    }

    void add(const SupplyLoad& load, double amperes, double watts)
    {
        if (amperes == 0.0 && watts == 0.0)
            return;
        const Supply* supply = supplyOf(*m_supplies, load.rail);
        if (!supply) {
            m_tree.unfed.push_back(load.rail);
            m_tree.unfedWatts += watts;
            return;
        }
        SupplyResult& result = resultOf(*supply);
        result.loadAmperes += amperes;
        result.outputWatts += watts;
        result.rails.emplace_back(load.rail, watts);
    }

    // From the leaves to the sources: what a supply takes loads the one above it.
    SupplyTree finish()
    {
        std::vector<std::pair<std::size_t, const Supply*>> byDepth;
        for (const Supply& supply : m_supplies->all)
            byDepth.emplace_back(depthOf(supply), &supply);
        std::stable_sort(byDepth.begin(), byDepth.end(),
                         [](const auto& a, const auto& b) { return a.first > b.first; });
        for (const auto& [depth, supply] : byDepth)
            feed(*supply);
        return std::move(m_tree);
    }

private:
    SupplyResult& resultOf(const Supply& supply)
    {
        return m_tree.supplies[static_cast<std::size_t>(&supply - m_supplies->all.data())];
    }

    std::size_t depthOf(const Supply& supply) const
    {
        std::size_t depth = 0;
        for (const Supply* above = m_supplies->find(supply.from); above; above = m_supplies->find(above->from))
            ++depth;
        return depth;
    }

    void feed(const Supply& supply)
    {
        SupplyResult& result = resultOf(supply);
        result.efficiency = efficiencyAt(supply, result.loadAmperes);
        result.inputWatts = result.outputWatts / result.efficiency;
        const Supply* above = m_supplies->find(supply.from);
        if (!above) {
            m_tree.inputWatts += result.inputWatts;
            return;
        }
        SupplyResult& feeder = resultOf(*above);
        feeder.outputWatts += result.inputWatts;
        if (result.inputWatts != 0.0)
            feeder.loadAmperes += result.inputWatts / feeder.volts;
    }

    const Supplies* m_supplies;
    SupplyTree m_tree;
};

// The volts of the rails of a supply are one, and those that it is said to have.
void refuseDifferentVolts(const Estimate& estimate, const std::vector<SupplyLoad>& loads)
{
    for (const Supply& supply : estimate.design.supplies.all) {
        std::string first = "the supply";
        float volts = static_cast<float>(supply.volts.value_or(0.0));
        for (std::size_t i = 0; i < supply.rails.size(); ++i) {
            const auto load = std::find_if(loads.begin(), loads.end(),
                                           [&](const SupplyLoad& one) { return one.rail == supply.rails[i]; });
            const float here = load == loads.end() ? 0.0f : static_cast<float>(load->volts);
            if (here == 0.0f)
                continue; // nothing is known of a rail that the device lacks
            if (volts != 0.0f && here != volts)
                throw Error(fmt::format("{}: {} has {:g} V and {} {:g} V; rails of different volts need supplies of "
                                        "their own",
                                        estimate.design.source.at(fmt::format("supplies.{}.rails[{}]", supply.name, i)),
                                        supply.rails[i], here, first, volts));
            if (volts == 0.0f)
                first = supply.rails[i];
            volts = here;
        }
    }
}

// A supply that others draw from needs volts, its own or its rails'.
void refuseUnknownVolts(const Estimate& estimate, const SupplyTree& tree)
{
    for (const SupplyResult& below : tree.supplies) {
        const SupplyResult* above = tree.find(below.from);
        if (above && above->volts == 0.0)
            throw Error(fmt::format("{}: {} draws from this supply, and none of its rails is used: it needs its "
                                    "\"volts\"",
                                    estimate.design.source.at("supplies." + above->name), below.name));
    }
}

// What each supply delivers at a step of powering up: rails of the steps before draw their static current, those of
// this step what they power up with, those after it nothing.
SupplyTree treeAtStep(const Loads& unloaded, const std::vector<SupplyLoad>& loads,
                      const std::vector<std::size_t>& steps, std::size_t step)
{
    Loads sum = unloaded;
    for (std::size_t i = 0; i < loads.size(); ++i) {
        const SupplyLoad& load = loads[i];
        const double amperes = steps[i] < step    ? load.staticAmperes
                               : steps[i] == step ? std::fmax(load.powerUpAmperes, load.staticAmperes)
                                                  : 0.0;
        sum.add(load, amperes, amperes * load.volts);
    }
    return sum.finish();
}

// The step of a rail: its own, else that of the rail whose current holds this rail's, else the last.
std::size_t stepOf(const Supplies& supplies, const std::string& rail)
{
    const auto find = [&](const std::string& name) {
        std::size_t step = 0;
        while (step < supplies.sequence.size() &&
               std::find(supplies.sequence[step].begin(), supplies.sequence[step].end(), name) ==
                   supplies.sequence[step].end())
            ++step;
        return step;
    };
    const std::size_t own = find(rail);
    const std::string holder = railHolding(rail);
    return own < supplies.sequence.size() || holder.empty() ? own : find(holder);
}

void addPowerUp(SupplyTree& tree, const Supplies& supplies, const std::vector<SupplyLoad>& loads, const Loads& unloaded)
{
    std::vector<std::size_t> steps;
    for (const SupplyLoad& load : loads)
        steps.push_back(stepOf(supplies, load.rail));
    for (std::size_t step = 0; step <= supplies.sequence.size(); ++step) {
        const SupplyTree then = treeAtStep(unloaded, loads, steps, step);
        for (std::size_t i = 0; i < tree.supplies.size(); ++i) {
            SupplyResult& result = tree.supplies[i];
            const double amperes = then.supplies[i].loadAmperes;
            if (amperes <= result.powerUpAmperes || std::isnan(result.powerUpAmperes))
                continue;
            result.powerUpAmperes = amperes;
            result.powerUpRails.clear();
            for (std::size_t rail = 0; rail < loads.size(); ++rail) {
                if (steps[rail] == step && loads[rail].powerUpAmperes > 0.0)
                    result.powerUpRails.push_back(loads[rail].rail);
            }
        }
    }
}

void warnOfUnfed(Estimate& estimate)
{
    std::set<std::string> unfed;
    for (const Side& side : estimate.sides)
        unfed.insert(side.supplies->unfed.begin(), side.supplies->unfed.end());
    if (!unfed.empty())
        estimate.warnings.push_back(
            fmt::format("{}: no supply feeds {}", estimate.design.source.at("supplies"), fmt::join(unfed, ", ")));
}

} // namespace

const SupplyResult* SupplyTree::find(const std::string& name) const
{
    const auto found =
        std::find_if(supplies.begin(), supplies.end(), [&](const SupplyResult& supply) { return supply.name == name; });
    return found == supplies.end() ? nullptr : &*found;
}

std::vector<SupplyLoad> supplyLoads(const Side& side, const std::vector<Side>& sides)
{
    std::vector<SupplyLoad> loads;
    for (const RailResult& rail : side.rails) {
        SupplyLoad load{rail.name,         rail.volts,         rail.dynamicAmperes,
                        rail.dynamicWatts, rail.staticAmperes, rail.powerUpAmperes};
        for (const Side& other : sides) {
            const RailResult* there = other.rail(rail.name);
            if (there && !(there->powerUpAmperes <= load.powerUpAmperes))
                load.powerUpAmperes = there->powerUpAmperes;
        }
        loads.push_back(load);
    }
    for (const RailResult& rail : side.rails) {
        const auto held =
            std::find_if(loads.begin(), loads.end(), [&](const SupplyLoad& l) { return l.rail == rail.name; });
        const auto holder =
            std::find_if(loads.begin(), loads.end(), [&](const SupplyLoad& l) { return l.rail == rail.inside; });
        if (holder != loads.end()) {
            holder->staticAmperes -= held->staticAmperes;
            holder->powerUpAmperes -= held->powerUpAmperes;
        }
    }
    return loads;
}

double efficiencyAt(const Supply& supply, double amperes)
{
    if (supply.efficiency.empty())
        return 1.0;
    auto before = supply.efficiency.front();
    if (amperes <= before.first)
        return before.second;
    for (const auto& point : supply.efficiency) {
        if (amperes < point.first)
            return before.second +
                   (point.second - before.second) * (amperes - before.first) / (point.first - before.first);
        before = point;
    }
    return before.second;
}

SupplyTree supplyTree(const Supplies& supplies, const std::vector<SupplyLoad>& loads)
{
    const Loads unloaded(supplies, loads);
    Loads sum = unloaded;
    for (const SupplyLoad& load : loads)
        sum.add(load, load.dynamicAmperes + load.staticAmperes, load.dynamicWatts + load.staticAmperes * load.volts);
    SupplyTree tree = sum.finish();
    addPowerUp(tree, supplies, loads, unloaded);
    return tree;
}

void addSupplies(Estimate& estimate)
{
    const Supplies& supplies = estimate.design.supplies;
    if (supplies.all.empty())
        return;
    for (Side& side : estimate.sides) {
        const std::vector<SupplyLoad> loads = supplyLoads(side, estimate.sides);
        refuseDifferentVolts(estimate, loads);
        side.supplies = supplyTree(supplies, loads);
        refuseUnknownVolts(estimate, *side.supplies);
    }
    warnOfUnfed(estimate);
}

} // namespace zelm::host

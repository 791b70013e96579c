#include "host/estimate/StaticPower.h"

#include "host/blocks/Rails.h"
#include "host/estimate/Thermal.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <map>
#include <memory>

namespace zelm::host {

namespace {

constexpr double kDefaultJunction = 100.0; // the model's own default
constexpr std::array kSubsystems{"PL_STATIC_POWER",   "PS_HARL_STATIC_POWER", "NOC_STATIC_POWER",
                                 "NEMT_STATIC_POWER", "GT_STATIC_POWER",      "TOTAL_STATIC_POWER"};

// The static power model of one device, with everything set but the temperature.
class StaticModel {
public:
    StaticModel(const Estimate& estimate, const ResolvedDevice& device, const std::string& process,
                const std::map<std::string, int>& usedCounts)
        : m_block(block("Static")), m_instance(m_block.create())
    {
        for (const auto& [cell, word] : device.staticInputs)
            m_instance->set(m_block.cell(cell), word);
        m_instance->set(m_block.cell("PROCESS"), process);
        for (const auto& [cell, count] : usedCounts)
            m_instance->set(m_block.cell(cell), count);
        const bool managed = std::any_of(estimate.groups.begin(), estimate.groups.end(),
                                         [](const GroupResult& group) { return group.block->name == "Harl"; });
        m_instance->set(m_block.cell("HAS_HARL_IO"), std::string(managed ? "YES" : "NO"));
        for (const auto& [rail, volts] : estimate.design.rails)
            m_instance->set(m_block.cell(rail), volts);
        for (const auto& [cell, value] : estimate.design.staticInputs)
            m_instance->set(m_block.cell(cell), value);
        for (const std::string& rail : railNames()) {
            m_rails.push_back({rail, railHolding(rail), &m_block.cell(rail), &m_block.cell(rail + "_STATIC_CURRENT"),
                               &m_block.cell(rail + "_POWERUP_CURRENT")});
        }
    }

    void evaluate(double junction)
    {
        m_instance->set(m_block.cell("JUNCTION_TEMPERATURE"), static_cast<float>(junction));
        m_instance->recalculate();
    }

    double number(const ZelmCellInfo& cell) const
    {
        const Value value = m_instance->get(cell);
        const float* real = std::get_if<float>(&value);
        return real ? static_cast<double>(*real) : std::nan("");
    }

    double number(std::string_view cell) const
    {
        return number(m_block.cell(cell));
    }

    // Each rail's volts times amperes, less what another rail holds already.
    double watts() const
    {
        double sum = 0.0;
        for (const Rail& rail : m_rails) {
            if (rail.inside.empty())
                sum += number(*rail.volts) * number(*rail.staticCurrent);
        }
        return sum;
    }

    std::vector<RailResult> rails() const
    {
        std::vector<RailResult> results;
        for (const Rail& rail : m_rails) {
            RailResult result{rail.name,
                              rail.inside,
                              number(*rail.volts),
                              0.0,
                              0.0,
                              number(*rail.staticCurrent),
                              0.0,
                              number(*rail.powerUpCurrent)};
            result.staticWatts = result.volts * result.staticAmperes;
            results.push_back(result);
        }
        return results;
    }

    // Volts outside what the rail's corners allow.
    std::vector<std::string> voltageWarnings()
    {
        std::vector<std::string> warnings;
        for (const Rail& rail : m_rails) {
            const ZelmCellInfo& leastCell = m_block.cell(rail.name + "_VALID_MIN");
            const ZelmCellInfo& mostCell = m_block.cell(rail.name + "_VALID_MAX");
            m_instance->pull(leastCell);
            m_instance->pull(mostCell);
            const double least = number(leastCell);
            const double most = number(mostCell);
            const double volts = number(*rail.volts);
            if (volts != 0.0 && most > 0.0 && (volts < least || volts > most))
                warnings.push_back(fmt::format("rail {} at {:g} V is outside its valid range of {:g} to {:g} V",
                                               rail.name, volts, least, most));
        }
        return warnings;
    }

private:
    struct Rail {
        std::string name;
        std::string inside;
        const ZelmCellInfo* volts;
        const ZelmCellInfo* staticCurrent;
        const ZelmCellInfo* powerUpCurrent;
    };

    const Block& m_block;
    std::unique_ptr<Instance> m_instance;
    std::vector<Rail> m_rails;
};

// The total power of a side at any junction temperature; the questions about it share temperatures.
class TotalPower {
public:
    TotalPower(StaticModel& model, double dynamicWatts) : m_model(&model), m_dynamicWatts(dynamicWatts) {}

    double operator()(double junction)
    {
        const auto [watts, isNew] = m_known.try_emplace(junction);
        if (isNew) {
            m_model->evaluate(junction);
            watts->second = m_dynamicWatts + m_model->watts();
        }
        return watts->second;
    }

private:
    StaticModel* m_model;
    double m_dynamicWatts;
    std::map<double, double> m_known;
};

// Where the junction stands, and how far it is from its limit.
void findJunction(Side& side, const Environment& environment, const PowerCurve& total)
{
    if (!environment.ambient) {
        side.junction = environment.junction.value_or(kDefaultJunction);
        return;
    }
    const double thetaJA = environment.cooling.front().thetaJA;
    side.thermal = findOperatingPoint(total, *environment.ambient, thetaJA);
    side.junction = side.thermal->junction;
    if (environment.junctionLimit) {
        side.highestAmbient = highestAmbient(total, thetaJA, *environment.junctionLimit);
        side.largestThetaJA = largestThetaJA(total, *environment.ambient, *environment.junctionLimit);
    }
}

std::vector<std::pair<double, double>> curveOf(const PowerCurve& total)
{
    constexpr double step = 5.0;
    constexpr int steps = static_cast<int>((kHottestCharacterised - kColdestCharacterised) / step);
    std::vector<std::pair<double, double>> curve;
    for (int i = 0; i <= steps; ++i) {
        const double junction = kColdestCharacterised + i * step;
        curve.emplace_back(junction, total(junction));
    }
    return curve;
}

// What the model says at the side's junction temperature.
void takeStaticPower(Side& side, StaticModel& model)
{
    model.evaluate(side.junction);
    side.staticWatts = model.watts();
    side.rails = model.rails();
    for (const char* cell : kSubsystems)
        side.subsystems.push_back({cell, model.number(cell)});
}

// What a device that runs away has none of: neither a temperature nor anything that depends on it.
void forgetAmounts(OperatingPoint& point)
{
    point.junction = point.power = point.loopGain = std::nan("");
}

void forgetAmounts(Side& side)
{
    forgetAmounts(*side.thermal);
    side.junction = side.staticWatts = std::nan("");
    for (RailResult& rail : side.rails) {
        if (rail.staticAmperes != 0.0)
            rail.staticAmperes = rail.staticWatts = rail.powerUpAmperes = std::nan("");
    }
    for (Subsystem& subsystem : side.subsystems)
        subsystem.watts = std::nan("");
}

void warn(const Side& side, std::vector<std::string>& warnings)
{
    if (!side.settles())
        warnings.push_back(fmt::format("process {}: {}", side.process, side.thermal->words));
    if (side.junction < kColdestCharacterised || side.junction > kHottestCharacterised)
        warnings.push_back(fmt::format(
            "process {}: the junction temperature of {:.1f} degrees is outside the characterisation ({:g} to {:g})",
            side.process, side.junction, kColdestCharacterised, kHottestCharacterised));
}

} // namespace

void addStaticPower(Estimate& estimate, const ResolvedDevice& device, const std::map<std::string, int>& usedCounts,
                    Curves curves)
{
    const Environment& environment = estimate.design.environment;
    block("Static").load();
    std::vector<std::string> processes{device.process};
    for (const char* process : {"TYP", "MAX"}) {
        if (process != device.process)
            processes.emplace_back(process);
    }

    for (const std::string& process : processes) {
        StaticModel model(estimate, device, process, usedCounts);
        TotalPower known(model, estimate.dynamicWatts);
        const PowerCurve total = std::ref(known);
        Side side;
        side.process = process;
        findJunction(side, environment, total);
        if (curves == Curves::drawn)
            side.curve = curveOf(total);
        if (environment.ambient && process == device.process) {
            for (const Cooling& cooling : environment.cooling) {
                estimate.cooling.push_back({cooling, findOperatingPoint(total, *environment.ambient, cooling.thetaJA)});
                if (!estimate.cooling.back().point.converged)
                    forgetAmounts(estimate.cooling.back().point);
            }
        }
        takeStaticPower(side, model);
        if (!side.settles())
            forgetAmounts(side);
        warn(side, estimate.warnings);
        if (process == device.process) {
            for (std::string& warning : model.voltageWarnings())
                estimate.warnings.push_back(std::move(warning));
        }
        estimate.sides.push_back(std::move(side));
    }
}

StaticSide staticSide(const Estimate& estimate, const std::string& process)
{
    if (!estimate.design.device)
        return {};
    const auto model = std::make_shared<StaticModel>(estimate, resolve(estimate.design), process, estimate.usedCounts);
    const auto watts = [model](double junction) {
        model->evaluate(junction);
        return model->watts();
    };
    const auto rails = [model](double junction) {
        model->evaluate(junction);
        return model->rails();
    };
    return {watts, rails};
}

} // namespace zelm::host

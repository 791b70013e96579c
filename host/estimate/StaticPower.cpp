#include "host/estimate/StaticPower.h"

#include "host/blocks/Rails.h"
#include "host/estimate/Thermal.h"
#include "host/estimate/Transient.h"

#include "framework/ZelmUnset.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <span>
#include <unordered_map>
#include <utility>

namespace zelm::host {

namespace {

constexpr double kDefaultJunction = 100.0; // the model's own default
constexpr std::array kSubsystems{"PL_STATIC_POWER",   "PS_HARL_STATIC_POWER", "NOC_STATIC_POWER",
                                 "NEMT_STATIC_POWER", "GT_STATIC_POWER",      "TOTAL_STATIC_POWER"};

using Settings = std::vector<std::pair<const ZelmCellInfo*, Value>>;

CellRef refOf(const ZelmCellInfo& cell)
{
    return {cell.type, cell.ordinal};
}

} // namespace

struct StaticRail {
    std::string name;
    std::string inside;
    const ZelmCellInfo* volts;
    const ZelmCellInfo* staticCurrent;
    const ZelmCellInfo* powerUpCurrent;
    const ZelmCellInfo* leastVolts;
    const ZelmCellInfo* mostVolts;
};

// The cells that the tool reads of the model, found once.
struct StaticCells {
    const Block& block = zelm::host::block("Static");
    const ZelmCellInfo& junction = block.cell("JUNCTION_TEMPERATURE");
    const ZelmCellInfo& process = block.cell("PROCESS");
    const ZelmCellInfo& hasManagedIo = block.cell("HAS_HARL_IO");
    std::vector<StaticRail> rails;
    std::vector<const ZelmCellInfo*> subsystems;
    std::vector<CellRef> ofWatts;   // what the total at a temperature takes
    std::vector<CellRef> ofResults; // all that results show

    StaticCells()
    {
        for (const std::string& name : railNames())
            rails.push_back({name, railHolding(name), &block.cell(name), &block.cell(name + "_STATIC_CURRENT"),
                             &block.cell(name + "_POWERUP_CURRENT"), &block.cell(name + "_VALID_MIN"),
                             &block.cell(name + "_VALID_MAX")});
        for (const char* name : kSubsystems)
            subsystems.push_back(&block.cell(name));
        for (const StaticRail& rail : rails) {
            for (const ZelmCellInfo* cell : {rail.volts, rail.staticCurrent, rail.powerUpCurrent})
                ofResults.push_back(refOf(*cell));
            if (rail.inside.empty())
                ofWatts.insert(ofWatts.end(), {refOf(*rail.volts), refOf(*rail.staticCurrent)});
        }
        for (const ZelmCellInfo* cell : subsystems)
            ofResults.push_back(refOf(*cell));
    }
};

namespace {

const StaticCells& staticCells()
{
    static const StaticCells cells;
    return cells;
}

// What the design, its device and its groups set in the model. The design's own settings win.
Settings settingsOf(const Design& design, const ResolvedDevice& device, const UsedCounts& usedCounts, bool isManaged)
{
    const StaticCells& cells = staticCells();
    std::vector<Value> byCell(cells.block.cells.size());
    const auto set = [&](const ZelmCellInfo& cell, Value value) {
        byCell[static_cast<std::size_t>(&cell - cells.block.cells.data())] = std::move(value);
    };
    for (const auto& [cell, word] : device.staticInputs)
        set(cells.block.cell(cell), word);
    for (const auto& [cell, count] : usedCounts)
        set(cells.block.cell(cell), count);
    set(cells.hasManagedIo, std::string(isManaged ? "YES" : "NO"));
    for (const auto& [rail, volts] : design.rails)
        set(cells.block.cell(rail), volts);
    for (const auto& [cell, value] : design.staticInputs)
        set(cells.block.cell(cell), value);
    Settings settings;
    for (std::size_t i = 0; i < byCell.size(); ++i) {
        if (byCell[i].index() != 0)
            settings.emplace_back(&cells.block.cells[i], std::move(byCell[i]));
    }
    return settings;
}

bool haveSameCells(const Settings& a, const Settings& b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](const auto& one, const auto& other) { return one.first == other.first; });
}

} // namespace

// The model of one device and process side, with everything set but the temperature.
class StaticModel {
public:
    explicit StaticModel(std::string process) : m_process(std::move(process)) {}

    const std::string& process() const
    {
        return m_process;
    }

    /// How much of what it has worked out such settings leave: all, or what depends on none that differs.
    enum class Fit { none, sameCells, all };
    Fit fits(const Settings& settings) const
    {
        if (!m_instance || !haveSameCells(settings, m_settings))
            return Fit::none;
        return settings == m_settings ? Fit::all : Fit::sameCells;
    }

    void take(const Settings& settings)
    {
        const unsigned loads = m_cells.block.loads();
        if (m_instance && settings == m_settings && loads == m_loads)
            return;
        m_known.clear();
        m_results.clear();
        forgetNodes();
        m_scaled.clear();
        m_voltageWarnings.reset();
        m_powerUpAmperes.clear();
        if (!m_instance || !haveSameCells(settings, m_settings))
            create();
        m_settings = settings;
        m_loads = loads;
        for (const auto& [cell, value] : settings)
            m_instance->set(*cell, value);
        m_instance->set(m_cells.process, m_process);
    }

    // Each rail's volts times amperes, less what another rail holds already. The model takes the temperature in single
    // precision, so that results are exact by that.
    double watts(double junction)
    {
        constexpr std::size_t most = 4096; // a table of a few kilobytes
        if (m_known.size() > most)
            m_known.clear();
        const auto [known, isNew] = m_known.try_emplace(static_cast<float>(junction), 0.0);
        if (isNew) {
            try {
                known->second = wattsAnew(junction);
            } catch (...) {
                m_known.erase(known);
                throw;
            }
        }
        return known->second;
    }

    /// All that results show of it at a junction temperature.
    struct Results {
        std::vector<RailResult> rails;
        std::vector<Subsystem> subsystems;
    };
    const Results& resultsAt(double junction)
    {
        constexpr std::size_t most = 64;
        if (m_results.size() == most)
            m_results.clear();
        const auto known = m_results.find(static_cast<float>(junction));
        if (known != m_results.end())
            return known->second;
        evaluate(junction, m_cells.ofResults);
        Results results{rails(), {}};
        for (const ZelmCellInfo* cell : m_cells.subsystems)
            results.subsystems.push_back({cell->name, number(*cell)});
        return m_results[static_cast<float>(junction)] = std::move(results);
    }

    // Which rails' currents are no leakage. The table is made for them.
    void beOffBy(const DataFactors& factors)
    {
        std::vector<std::size_t> apart;
        for (std::size_t i = 0; i < factors.ofRails().size(); ++i) {
            if (!std::isnan(factors.ofRails()[i]))
                apart.push_back(i);
        }
        if (apart != m_apart)
            forgetNodes();
        m_apart = std::move(apart);
    }

    // What the two tell if the data are off, by the table.
    double watts(double junction, const DataFactors& factors)
    {
        const Between between = around(junction);
        double sum = 0.0;
        double apart = 0.0;
        for (std::size_t i = 0; i < between.nodes.size(); ++i) {
            sum += between.weights[i] * between.nodes[i]->leakage;
            for (const auto& [rail, watts] : between.nodes[i]->apart)
                apart += between.weights[i] * factors.ofRails()[rail] * watts;
        }
        return factors.ofLeakage(m_process, junction) * sum + apart;
    }
    const std::vector<RailResult>& railsAt(double junction, const DataFactors& factors)
    {
        const Between between = around(junction);
        const double leakage = factors.ofLeakage(m_process, junction);
        if (m_scaled.empty())
            m_scaled = resultsAt(kTableStep * std::floor(junction / kTableStep)).rails;
        for (std::size_t i = 0; i < m_scaled.size(); ++i) {
            RailResult& rail = m_scaled[i];
            if (rail.staticAmperes == 0.0)
                continue; // at any temperature
            const double own = factors.ofRails()[i];
            rail.staticAmperes = std::isnan(own) ? leakage : own;
            double amperes = 0.0;
            for (std::size_t k = 0; k < between.nodes.size(); ++k)
                amperes += between.weights[k] * between.nodes[k]->amperes[i];
            rail.staticAmperes *= amperes;
            rail.staticWatts = rail.volts * rail.staticAmperes;
        }
        return m_scaled;
    }

    // Of each rail. The temperature doesn't matter.
    const std::vector<double>& powerUpAmperes()
    {
        constexpr double cool = 25.0;
        if (m_powerUpAmperes.empty()) {
            for (const RailResult& rail : resultsAt(cool).rails)
                m_powerUpAmperes.push_back(rail.powerUpAmperes);
        }
        return m_powerUpAmperes;
    }

    // What the model says at a junction temperature.
    void fill(Side& side)
    {
        side.staticWatts = watts(side.junction);
        const Results& results = resultsAt(side.junction);
        side.rails = results.rails;
        side.subsystems = results.subsystems;
    }

    // Volts outside what the rail's corners allow.
    const std::vector<std::string>& voltageWarnings()
    {
        if (!m_voltageWarnings)
            m_voltageWarnings = findVoltageWarnings();
        return *m_voltageWarnings;
    }

private:
    static constexpr double kTableStep = 0.5; // degrees

    // What the formulas say at a temperature of the table, by rail.
    struct Node {
        std::vector<double> amperes;
        double leakage = 0.0;                              // watts of all rails but those apart
        std::vector<std::pair<std::size_t, double>> apart; // rails and their watts
    };

    // Lagrange's polynomial through two nodes on either side.
    struct Between {
        std::array<const Node*, 4> nodes;
        std::array<double, 4> weights;
    };

    Between around(double junction)
    {
        const double place = junction / kTableStep;
        const int index = static_cast<int>(std::floor(place));
        const double t = place - index;
        return {nodesAround(index),
                {-t * (t - 1.0) * (t - 2.0) / 6.0, (t + 1.0) * (t - 1.0) * (t - 2.0) / 2.0,
                 -(t + 1.0) * t * (t - 2.0) / 2.0, (t + 1.0) * t * (t - 1.0) / 6.0}};
    }

    // Nodes keep their places; the search for a junction goes on near where it was.
    const std::array<const Node*, 4>& nodesAround(int index)
    {
        if (m_around != index) {
            m_nodesAround = {&node(index - 1), &node(index), &node(index + 1), &node(index + 2)};
            m_around = index;
        }
        return m_nodesAround;
    }

    void forgetNodes()
    {
        m_nodes.clear();
        m_around.reset();
    }

    const Node& node(int index)
    {
        const auto known = m_nodes.find(index);
        return known != m_nodes.end() ? known->second : m_nodes.try_emplace(index, nodeAnew(index)).first->second;
    }

    Node nodeAnew(int index)
    {
        evaluate(kTableStep * index, m_cells.ofResults);
        const std::vector<RailResult> now = rails();
        Node node;
        for (std::size_t i = 0; i < now.size(); ++i) {
            node.amperes.push_back(now[i].staticAmperes);
            if (!now[i].inside.empty() || now[i].staticWatts == 0.0)
                continue; // what another rail holds counts there
            if (std::find(m_apart.begin(), m_apart.end(), i) == m_apart.end())
                node.leakage += now[i].staticWatts;
            else
                node.apart.emplace_back(i, now[i].staticWatts);
        }
        return node;
    }

    void evaluate(double junction, std::span<const CellRef> wanted)
    {
        m_instance->set(m_cells.junction, static_cast<float>(junction));
        m_instance->recalculate(wanted);
    }

    // As just evaluated.
    std::vector<RailResult> rails() const
    {
        std::vector<RailResult> results;
        results.reserve(m_cells.rails.size());
        for (const StaticRail& rail : m_cells.rails) {
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

    double wattsAnew(double junction)
    {
        evaluate(junction, m_cells.ofWatts);
        double sum = 0.0;
        for (const auto& [volts, amperes] : m_terms)
            sum += orNan(*volts) * orNan(*amperes);
        return sum;
    }

    void create()
    {
        m_instance = m_cells.block.create();
        m_terms.clear();
        for (const StaticRail& rail : m_cells.rails) {
            if (rail.inside.empty())
                m_terms.emplace_back(&m_instance->slot(*rail.volts), &m_instance->slot(*rail.staticCurrent));
        }
    }

    static double orNan(float value)
    {
        return isUnset(value) ? std::nan("") : static_cast<double>(value);
    }

    std::vector<std::string> findVoltageWarnings()
    {
        std::vector<std::string> warnings;
        for (const StaticRail& rail : m_cells.rails) {
            m_instance->pull(*rail.volts);
            m_instance->pull(*rail.leastVolts);
            m_instance->pull(*rail.mostVolts);
            const double least = number(*rail.leastVolts);
            const double most = number(*rail.mostVolts);
            const double volts = number(*rail.volts);
            if (volts != 0.0 && most > 0.0 && (volts < least || volts > most))
                warnings.push_back(fmt::format("rail {} at {:g} V is outside its valid range of {:g} to {:g} V",
                                               rail.name, volts, least, most));
        }
        return warnings;
    }

    double number(const ZelmCellInfo& cell) const
    {
        return orNan(m_instance->slot(cell));
    }

    const StaticCells& m_cells = staticCells();
    std::string m_process;
    Settings m_settings;
    unsigned m_loads = 0; // of the data block
    std::unique_ptr<Instance> m_instance;
    std::vector<std::pair<const float*, const float*>> m_terms; // volts and amperes whose products make the watts
    std::unordered_map<float, double> m_known;                  // static watts by junction temperature
    std::unordered_map<float, Results> m_results;               // the same
    std::unordered_map<int, Node> m_nodes;                      // by temperature over the table's step
    std::optional<int> m_around;                                // where the last were looked for
    std::array<const Node*, 4> m_nodesAround{};                 // those found there
    std::vector<std::size_t> m_apart;                           // rails that the nodes hold apart
    std::vector<RailResult> m_scaled;
    std::optional<std::vector<std::string>> m_voltageWarnings;
    std::vector<double> m_powerUpAmperes;
};

namespace {

void findJunction(Side& side, const Environment& environment, const PowerCurve& total)
{
    if (!environment.ambient) {
        side.junction = environment.junction.value_or(kDefaultJunction);
        return;
    }
    side.thermal = findOperatingPoint(total, *environment.ambient, environment.cooling.front().thetaJA);
    side.junction = side.thermal->junction;
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

namespace {

// Models that no design uses: the next design of the same settings, or some that are like them, goes on with what they
// have worked out.
class FreeModels {
public:
    std::shared_ptr<StaticModel> take(const std::string& process, const Settings& settings)
    {
        const std::lock_guard lock(m_mutex);
        for (const StaticModel::Fit fit : {StaticModel::Fit::all, StaticModel::Fit::sameCells}) {
            const auto found = std::find_if(m_free.begin(), m_free.end(), [&](const auto& model) {
                return model->process() == process && model->fits(settings) == fit;
            });
            if (found == m_free.end())
                continue;
            std::shared_ptr<StaticModel> model = std::move(*found);
            m_free.erase(found);
            return model;
        }
        return std::make_shared<StaticModel>(process);
    }

    // Unless somebody else goes on with it.
    void giveBack(std::shared_ptr<StaticModel> model)
    {
        constexpr std::size_t most = 16;
        if (model.use_count() > 1)
            return;
        const std::lock_guard lock(m_mutex);
        if (m_free.size() == most)
            m_free.pop_back();
        m_free.insert(m_free.begin(), std::move(model));
    }

private:
    std::mutex m_mutex;
    std::vector<std::shared_ptr<StaticModel>> m_free; // the one that was used last stands first
};

FreeModels& freeModels()
{
    static FreeModels models;
    return models;
}

} // namespace

StaticPower::StaticPower() = default;

StaticPower::~StaticPower()
{
    giveBack();
}

void StaticPower::giveBack()
{
    for (auto& [process, model] : m_models)
        freeModels().giveBack(std::move(model));
    m_models.clear();
}

void StaticPower::takeFrom(const StaticPower& other)
{
    giveBack();
    m_processes = other.m_processes;
    m_models = other.m_models;
}

void StaticPower::take(const Design& design, const ResolvedDevice& device, const UsedCounts& usedCounts, bool isManaged,
                       const StaticPower* like)
{
    block("Static").load();
    m_processes = {device.process};
    for (const char* process : {"TYP", "MAX"}) {
        if (process != device.process)
            m_processes.emplace_back(process);
    }
    const Settings settings = settingsOf(design, device, usedCounts, isManaged);
    for (const std::string& process : m_processes) {
        std::shared_ptr<StaticModel>& model = m_models[process];
        const std::shared_ptr<StaticModel> lent = like ? like->m_models.at(process) : nullptr;
        const bool isLent = lent && lent->fits(settings) == StaticModel::Fit::all;
        if (model && model->fits(settings) != StaticModel::Fit::all && (isLent || model.use_count() > 1))
            freeModels().giveBack(std::exchange(model, nullptr));
        if (!model)
            model = isLent ? lent : freeModels().take(process, settings);
        model->take(settings);
    }
}

PowerCurve StaticPower::curve(const std::string& process)
{
    StaticModel* model = m_models.at(process).get();
    if (m_factors)
        return [model, factors = m_factors](double junction) { return model->watts(junction, *factors); };
    return [model](double junction) { return model->watts(junction); };
}

PowerCurve StaticPower::tabledCurve(const std::string& process)
{
    return m_factors ? curve(process) : tabled(curve(process));
}

const std::vector<RailResult>& StaticPower::rails(const std::string& process, double junction)
{
    StaticModel& model = *m_models.at(process);
    return m_factors ? model.railsAt(junction, *m_factors) : model.resultsAt(junction).rails;
}

std::vector<double> StaticPower::powerUpAmperes()
{
    std::vector<double> most;
    for (const auto& [process, model] : m_models) {
        const std::vector<double>& amperes = model->powerUpAmperes();
        most.resize(amperes.size());
        for (std::size_t i = 0; i < most.size(); ++i)
            most[i] = std::max(most[i], amperes[i]);
    }
    return most;
}

PowerCurve StaticPower::totalOf(const Estimate& estimate, const std::string& process)
{
    return [watts = estimate.dynamicWatts, ofStatic = curve(process)](double junction) {
        return watts + ofStatic(junction);
    };
}

// Without subsystems, which no study looks at.
void StaticPower::fill(Side& side, StaticModel& model) const
{
    if (!m_factors)
        return model.fill(side);
    side.staticWatts = model.watts(side.junction, *m_factors);
    side.rails = model.railsAt(side.junction, *m_factors);
}

void StaticPower::addTo(Estimate& estimate)
{
    for (const std::string& process : m_processes) {
        StaticModel& model = *m_models.at(process);
        if (m_factors)
            model.beOffBy(*m_factors);
        Side side;
        side.process = process;
        findJunction(side, estimate.design.environment, totalOf(estimate, process));
        fill(side, model);
        if (!side.settles())
            forgetAmounts(side);
        warn(side, estimate.warnings);
        if (process == m_processes.front()) {
            const std::vector<std::string>& warnings = model.voltageWarnings();
            estimate.warnings.insert(estimate.warnings.end(), warnings.begin(), warnings.end());
        }
        estimate.sides.push_back(std::move(side));
    }
}

void StaticPower::addLimitsTo(Estimate& estimate, Curves curves)
{
    const Environment& environment = estimate.design.environment;
    for (Side& side : estimate.sides) {
        const PowerCurve total = totalOf(estimate, side.process);
        if (curves == Curves::drawn)
            side.curve = curveOf(total);
        if (environment.ambient && environment.junctionLimit) {
            side.highestAmbient =
                highestAmbient(total, environment.cooling.front().thetaJA, *environment.junctionLimit);
            side.largestThetaJA = largestThetaJA(total, *environment.ambient, *environment.junctionLimit);
        }
    }
    if (!environment.ambient)
        return;
    const PowerCurve total = totalOf(estimate, m_processes.front());
    for (const Cooling& cooling : environment.cooling) {
        estimate.cooling.push_back({cooling, findOperatingPoint(total, *environment.ambient, cooling.thetaJA)});
        if (!estimate.cooling.back().point.converged)
            forgetAmounts(estimate.cooling.back().point);
    }
}

namespace {

bool isManaged(const Estimate& estimate)
{
    return std::any_of(estimate.groups.begin(), estimate.groups.end(),
                       [](const GroupResult& group) { return group.block->name == "Harl"; });
}

} // namespace

Settings staticSettings(const Estimate& estimate)
{
    if (!estimate.design.device)
        return {};
    return settingsOf(estimate.design, *resolve(estimate.design), estimate.usedCounts, isManaged(estimate));
}

std::shared_ptr<StaticPower> staticPowerOf(const Estimate& estimate)
{
    if (!estimate.design.device)
        return nullptr;
    auto power = std::make_shared<StaticPower>();
    power->take(estimate.design, *resolve(estimate.design), estimate.usedCounts, isManaged(estimate));
    return power;
}

} // namespace zelm::host

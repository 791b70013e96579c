#include "host/estimate/Modes.h"

#include "host/base/Error.h"
#include "host/estimate/StaticPower.h"
#include "host/estimate/Supplies.h"
#include "host/estimate/Transient.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <set>

namespace zelm::host {

namespace {

// One mode on one process side: its power and its rails at any junction temperature.
class ModeAtWork {
public:
    ModeAtWork(const Estimate& mode, std::size_t side)
        : m_mode(&mode), m_side(&mode.sides[side]), m_static(staticPowerOf(mode))
    {
        if (!m_static)
            return;
        m_watts = tabled(m_static->curve(m_side->process));
        // Power-up currents are the worst of both sides, whatever the temperature.
        for (const Side& other : mode.sides) {
            for (const RailResult& rail : m_static->rails(other.process, kCool)) {
                double& most = m_powerUp[rail.name];
                most = std::max(most, rail.powerUpAmperes);
            }
        }
    }

    double staticWatts(double junction) const
    {
        return m_watts ? m_watts(junction) : 0.0;
    }
    double watts(double junction) const
    {
        return m_mode->dynamicWatts + staticWatts(junction);
    }

    // The side as it would be at that junction.
    Side at(double junction) const
    {
        Side side;
        side.rails = m_side->rails;
        for (const RailResult& now :
             m_static ? m_static->rails(m_side->process, junction) : std::vector<RailResult>()) {
            for (RailResult& rail : side.rails) {
                if (rail.name != now.name)
                    continue;
                rail.staticAmperes = now.staticAmperes;
                rail.staticWatts = now.staticWatts;
                rail.powerUpAmperes = m_powerUp.at(now.name);
            }
        }
        if (!m_mode->design.supplies.all.empty())
            side.supplies = supplyTree(m_mode->design.supplies, supplyLoads(side, {}));
        return side;
    }

private:
    static constexpr double kCool = 25.0;

    const Estimate* m_mode;
    const Side* m_side;
    std::shared_ptr<StaticPower> m_static;
    PowerCurve m_watts;
    std::map<std::string, double> m_powerUp;
};

// Adds up a period side moment by moment.
class PeriodSum {
public:
    PeriodSum(PeriodSide& side, std::vector<ModeResult>& modes, std::size_t index, double seconds)
        : m_side(&side), m_modes(&modes), m_index(index), m_seconds(seconds)
    {
        for (ModeResult& mode : modes) {
            mode.sides.emplace_back();
            mode.sides.back().lowestJunction = HUGE_VAL;
            mode.sides.back().highestJunction = -HUGE_VAL;
        }
    }

    void add(const Moment& moment, const ModeAtWork& mode)
    {
        const Side now = mode.at(moment.junction);
        const bool follows = !m_side->moments.empty() && m_side->moments.back().mode == moment.mode;
        const double share = follows ? 0.5 * (moment.seconds - m_side->moments.back().seconds) / m_seconds : 0.0;
        Moment whole = moment;
        whole.inputWatts = now.supplies ? now.supplies->inputWatts : 0.0;
        addAll(whole, now, mode, share);
        // A mode begins as the one before ended, which is the one that led there.
        if (follows)
            addExtreme(whole);
        m_side->moments.push_back(whole);
        m_before = now;
    }

    // A moment that may be the worst, but takes no time in the period.
    void addLasting(Moment moment, const ModeAtWork& mode)
    {
        const Side now = mode.at(moment.junction);
        moment.inputWatts = now.supplies ? now.supplies->inputWatts : 0.0;
        addAll(moment, now, mode, 0.0);
        addExtreme(moment);
    }

    const std::string& nameOf(std::size_t mode) const
    {
        return (*m_modes)[mode].name;
    }

private:
    void addAll(const Moment& moment, const Side& now, const ModeAtWork& mode, double share)
    {
        addMode(moment, mode, share);
        addRails(now, share);
        addTree(now, share);
        if (m_side->peakMode.empty() || moment.watts > m_side->peakWatts) {
            m_side->peakWatts = moment.watts;
            m_side->peakMode = nameOf(moment.mode);
        }
        m_side->peakInputWatts = std::max(m_side->peakInputWatts, moment.inputWatts);
    }

    void addExtreme(const Moment& moment)
    {
        if (m_first || moment.junction > m_side->highest.junction)
            m_side->highest = moment;
        if (m_first || moment.junction < m_side->lowest.junction)
            m_side->lowest = moment;
        m_first = false;
    }

    // Half of the time between two moments counts for either.
    void addMode(const Moment& moment, const ModeAtWork& mode, double share)
    {
        const Moment before = share > 0.0 ? m_side->moments.back() : moment;
        ModeResult& result = (*m_modes)[moment.mode];
        ModeSide& side = result.sides[m_index];
        const double part = share * m_seconds / result.seconds;
        side.staticWatts += part * (mode.staticWatts(before.junction) + mode.staticWatts(moment.junction));
        side.watts += part * (before.watts + moment.watts);
        side.inputWatts += part * (before.inputWatts + moment.inputWatts);
        side.peakWatts = std::max(side.peakWatts, moment.watts);
        side.joules = side.watts * result.seconds;
        side.lowestJunction = std::min(side.lowestJunction, moment.junction);
        side.highestJunction = std::max(side.highestJunction, moment.junction);
        m_side->watts += share * (before.watts + moment.watts);
        m_side->inputWatts += share * (before.inputWatts + moment.inputWatts);
        m_side->joules = m_side->watts * m_seconds;
        m_mode = moment;
    }

    void addRails(const Side& now, double share)
    {
        for (const RailResult& rail : now.rails) {
            auto period = std::find_if(m_side->rails.begin(), m_side->rails.end(),
                                       [&](const RailPeriod& one) { return one.rail == rail.name; });
            if (period == m_side->rails.end())
                period = m_side->rails.insert(period, {rail.name, 0.0, 0.0, 0.0, ""});
            const RailResult* before = share > 0.0 ? m_before.rail(rail.name) : nullptr;
            period->watts += share * (rail.watts() + (before ? before->watts() : rail.watts()));
            period->peakWatts = std::max(period->peakWatts, rail.watts());
            if (rail.amperes() > period->peakAmperes || period->peakMode.empty()) {
                period->peakAmperes = rail.amperes();
                period->peakMode = nameOf(m_mode.mode);
            }
        }
    }

    void addTree(const Side& now, double share)
    {
        if (!now.supplies)
            return;
        m_side->supplies.resize(now.supplies->supplies.size());
        for (std::size_t i = 0; i < now.supplies->supplies.size(); ++i) {
            const SupplyResult& supply = now.supplies->supplies[i];
            SupplyPeriod& period = m_side->supplies[i];
            const double before = share > 0.0 ? m_before.supplies->supplies[i].inputWatts : supply.inputWatts;
            period.inputWatts += share * (before + supply.inputWatts);
            period.peakInputWatts = std::max(period.peakInputWatts, supply.inputWatts);
            period.powerUpAmperes = std::max(period.powerUpAmperes, supply.powerUpAmperes);
            if (period.name.empty() || supply.loadAmperes > period.peakAmperes) {
                period.peakAmperes = supply.loadAmperes;
                period.peakMode = nameOf(m_mode.mode);
            }
            period.name = supply.name;
            period.maxAmperes = supply.maxAmperes;
        }
    }

    PeriodSide* m_side;
    std::vector<ModeResult>* m_modes;
    std::size_t m_index;
    double m_seconds;
    bool m_first = true;
    Moment m_mode;
    Side m_before;
};

// Each mode at one temperature all the time.
std::vector<TransientPoint> standing(const std::vector<Phase>& phases, double junction)
{
    std::vector<TransientPoint> points;
    double seconds = 0.0;
    for (std::size_t i = 0; i < phases.size(); ++i) {
        const double watts = phases[i].power(junction);
        points.push_back({seconds, i, junction, watts});
        seconds += phases[i].seconds;
        points.push_back({seconds, i, junction, watts});
    }
    return points;
}

// The points of the period, and what is said of its temperature.
std::vector<TransientPoint> pointsOf(const Estimate& estimate, const std::vector<Phase>& phases, PeriodSide& side)
{
    const Environment& environment = estimate.design.environment;
    if (!environment.ambient || estimate.side().process.empty()) {
        side.settledJunction = estimate.side().junction;
        side.words = "the junction temperature is given";
        return standing(phases, side.settledJunction);
    }
    const OperatingPoint average =
        findOperatingPoint(averageOf(phases), *environment.ambient, environment.cooling.front().thetaJA);
    side.settledJunction = average.junction;
    side.settles = average.converged;
    side.words = "at the average power it " + average.words;
    if (!average.converged)
        side.words = average.words;
    if (!average.converged || estimate.design.stages.empty())
        return average.converged ? standing(phases, average.junction) : std::vector<TransientPoint>();
    PeriodicState state = periodicState(estimate.design.stages, phases, *environment.ambient);
    side.settles = state.found;
    if (!state.found)
        side.words = state.words;
    return state.points;
}

// What a side that runs away has none of.
void forgetPeriod(PeriodSide& side, std::vector<ModeResult>& modes, std::size_t index)
{
    const double none = std::nan("");
    side.settledJunction = side.watts = side.peakWatts = side.joules = side.inputWatts = side.peakInputWatts = none;
    side.lowest.junction = side.highest.junction = none;
    for (ModeResult& mode : modes)
        mode.sides[index] = {none, none, none, none, none, none, none};
}

std::vector<Phase> phasesOf(const std::vector<ModeAtWork>& atWork, const std::vector<ModeResult>& modes)
{
    std::vector<Phase> phases;
    for (std::size_t i = 0; i < modes.size(); ++i)
        phases.push_back({modes[i].seconds, [mode = &atWork[i]](double junction) { return mode->watts(junction); }});
    return phases;
}

// Without stages, nothing tells how fast the junction follows: the worst of a mode is where it alone would settle.
void addLasting(PeriodSum& sum, PeriodSide& side, const std::vector<Estimate>& modes,
                const std::vector<ModeAtWork>& atWork, std::size_t index)
{
    for (std::size_t i = 0; i < modes.size() && side.settles; ++i) {
        const Side& alone = modes[i].sides[index];
        side.settles = alone.settles();
        if (side.settles)
            sum.addLasting({0.0, i, alone.junction, atWork[i].watts(alone.junction), 0.0}, atWork[i]);
        else
            side.words = fmt::format("mode \"{}\", if it lasts: {}; thermal stages would tell how fast it gets there",
                                     sum.nameOf(i), alone.thermal->words);
    }
}

void addSide(Estimate& estimate, const std::vector<Estimate>& modes, std::size_t index)
{
    Period& period = *estimate.period;
    PeriodSide side;
    side.process = estimate.sides[index].process;
    std::vector<ModeAtWork> atWork;
    for (const Estimate& mode : modes)
        atWork.emplace_back(mode, index);
    PeriodSum sum(side, period.modes, index, period.seconds);
    const std::vector<TransientPoint> points = pointsOf(estimate, phasesOf(atWork, period.modes), side);
    for (const TransientPoint& point : points)
        sum.add({point.seconds, point.phase, point.junction, point.watts, 0.0}, atWork[point.phase]);
    if (estimate.design.stages.empty() && estimate.side().thermal && side.settles)
        addLasting(sum, side, modes, atWork, index);
    if (side.settles) {
        const double drawn = estimate.design.supplies.all.empty() ? side.watts : side.inputWatts;
        if (estimate.design.batteryWattHours)
            side.batteryHours = *estimate.design.batteryWattHours / drawn;
    } else {
        forgetPeriod(side, period.modes, index);
        estimate.warnings.push_back(fmt::format("process {}: the modes' {}", side.process, side.words));
    }
    period.sides.push_back(std::move(side));
}

void addWarnings(Estimate& estimate, const Estimate& mode, const std::string& name)
{
    const std::set<std::string> known(estimate.warnings.begin(), estimate.warnings.end());
    for (const std::string& warning : mode.warnings) {
        const bool ofASide = warning.starts_with("process "); // of a junction that the mode alone would settle at
        if (!known.contains(warning) && !ofASide)
            estimate.warnings.push_back(fmt::format("mode \"{}\": {}", name, warning));
    }
}

} // namespace

void addModes(Estimate& estimate, Gaps gaps)
{
    estimate.period.reset();
    if (estimate.design.modes.empty())
        return;
    estimate.period.emplace();
    std::vector<Estimate> modes;
    for (const Mode& mode : estimate.design.modes) {
        try {
            modes.push_back(zelm::host::estimate(*mode.design, Curves::none, gaps));
        } catch (const Error& error) {
            throw Error(fmt::format("mode \"{}\": {}", mode.name, error.what()));
        }
        addWarnings(estimate, modes.back(), mode.name);
        ModeResult result{mode.name, mode.seconds, modes.back().dynamicWatts, {}, {}};
        for (const GroupResult& group : modes.back().groups)
            result.groupWatts.push_back(group.watts);
        estimate.period->modes.push_back(std::move(result));
        estimate.period->seconds += mode.seconds;
    }
    for (std::size_t index = 0; index < estimate.sides.size(); ++index)
        addSide(estimate, modes, index);
}

std::vector<Side> worstMoments(const Estimate& estimate)
{
    if (!estimate.period)
        return estimate.sides;
    std::vector<Side> sides = estimate.sides;
    for (std::size_t i = 0; i < sides.size(); ++i) {
        const PeriodSide& worst = estimate.period->sides[i];
        Side& side = sides[i];
        side.totalWatts = worst.peakWatts;
        side.junction = worst.highest.junction;
        const double none = worst.settles ? 0.0 : std::nan("");
        for (RailResult& rail : side.rails) {
            rail.dynamicAmperes = none;
            rail.staticAmperes = 0.0;
        }
        for (const RailPeriod& period : worst.rails) {
            if (!side.rail(period.rail))
                side.rails.push_back({period.rail, "", 0.0, 0.0, 0.0, 0.0, 0.0, 0.0});
            for (RailResult& rail : side.rails) {
                if (rail.name == period.rail)
                    rail.dynamicAmperes = period.peakAmperes;
            }
        }
        for (std::size_t s = 0; side.supplies && s < side.supplies->supplies.size(); ++s) {
            SupplyResult& supply = side.supplies->supplies[s];
            supply.loadAmperes = worst.settles ? worst.supplies[s].peakAmperes : none;
            supply.powerUpAmperes = worst.settles ? worst.supplies[s].powerUpAmperes : none;
        }
    }
    return sides;
}

void addStartUp(Estimate& estimate)
{
    const Design& design = estimate.design;
    if (design.stages.empty() || !design.device)
        throw Error(fmt::format("{}: the start-up needs a device and \"thermal\" with its stages", design.source.file));
    constexpr std::size_t whiles = 300;
    std::vector<Estimate> modes;
    for (const Mode& mode : design.modes)
        modes.push_back(zelm::host::estimate(*mode.design, Curves::none, Gaps::warned));
    for (std::size_t index = 0; index < estimate.sides.size(); ++index) {
        std::vector<ModeAtWork> atWork;
        for (const Estimate& mode : modes)
            atWork.emplace_back(mode, index);
        if (modes.empty())
            atWork.emplace_back(estimate, index);
        std::vector<Phase> phases = estimate.period ? phasesOf(atWork, estimate.period->modes) : std::vector<Phase>();
        if (modes.empty())
            phases.push_back({design.stages.front().tau, [&](double junction) { return atWork[0].watts(junction); }});
        for (const JunctionBand& band : warmUpFrom(design.stages, phases, *design.environment.ambient, whiles))
            estimate.sides[index].startUp.push_back({band.seconds, band.lowest, band.highest});
    }
}

} // namespace zelm::host

#include "host/estimate/Modes.h"

#include "host/base/Error.h"
#include "host/estimate/StaticPower.h"
#include "host/estimate/Supplies.h"
#include "host/estimate/Transient.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <memory>
#include <set>
#include <span>

namespace zelm::host {

namespace {

// One mode on one process side: its power and its rails at any junction temperature.
class ModeAtWork {
public:
    ModeAtWork(const EstimatedMode& mode, std::size_t side)
        : m_mode(mode.estimate), m_side(&mode.estimate->sides[side]), m_static(mode.power)
    {
        if (!m_static)
            return;
        m_watts = m_static->tabledCurve(m_side->process);
        m_powerUp = m_static->powerUpAmperes();
    }

    double staticWatts(double junction) const
    {
        return m_watts ? m_watts(junction) : 0.0;
    }
    double watts(double junction) const
    {
        return m_mode->dynamicWatts + staticWatts(junction);
    }

    // The side as it would be at that junction, valid until two other junctions have been asked for.
    const Side& at(double junction)
    {
        if (m_now < m_at.size() && m_at[m_now].junction == junction)
            return m_at[m_now];
        m_now = m_now == 0 ? 1 : 0;
        Side& side = m_at[m_now];
        side.junction = junction;
        fill(side);
        return side;
    }

private:
    // The model's rails come first, in its order.
    void fill(Side& side) const
    {
        if (side.rails.empty())
            side.rails = m_side->rails;
        if (m_static) {
            const std::vector<RailResult>& now = m_static->rails(m_side->process, side.junction);
            for (std::size_t i = 0; i < now.size(); ++i) {
                side.rails[i].staticAmperes = now[i].staticAmperes;
                side.rails[i].staticWatts = now[i].staticWatts;
                side.rails[i].powerUpAmperes = m_powerUp[i];
            }
        }
        if (!m_mode->design.supplies.all.empty())
            side.supplies = supplyTree(m_mode->design.supplies, supplyLoads(side, {}));
    }

    const Estimate* m_mode;
    const Side* m_side;
    StaticPower* m_static;
    PowerCurve m_watts;
    std::vector<double> m_powerUp; // by the model's rails
    std::array<Side, 2> m_at;      // for the last junctions asked for
    std::size_t m_now = m_at.size();
};

const std::string& railOf(const RailResult& result)
{
    return result.name;
}

const std::string& railOf(const RailPeriod& period)
{
    return period.rail;
}

// The place of a rail, the end if it isn't there. Lists of rails are alike: where it stands in another is looked first.
template <class Rails>
auto findRail(Rails& rails, const std::string& wanted, std::size_t expected)
{
    if (expected < rails.size() && railOf(rails[expected]) == wanted)
        return rails.begin() + static_cast<std::ptrdiff_t>(expected);
    return std::find_if(rails.begin(), rails.end(), [&](const auto& rail) { return railOf(rail) == wanted; });
}

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

    void add(const Moment& moment, ModeAtWork& mode)
    {
        const Side& now = mode.at(moment.junction);
        const bool follows = !m_side->moments.empty() && m_side->moments.back().mode == moment.mode;
        const double share = follows ? 0.5 * (moment.seconds - m_side->moments.back().seconds) / m_seconds : 0.0;
        Moment whole = moment;
        whole.inputWatts = now.supplies ? now.supplies->inputWatts : 0.0;
        addAll(whole, now, mode, share);
        // A mode begins as the one before ended, which is the one that led there.
        if (follows)
            addExtreme(whole);
        m_side->moments.push_back(whole);
        m_before = &now;
    }

    // A moment that may be the worst, but takes no time in the period.
    void addLasting(Moment moment, ModeAtWork& mode)
    {
        const Side& now = mode.at(moment.junction);
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
        m_side->rails.reserve(now.rails.size());
        for (std::size_t i = 0; i < now.rails.size(); ++i) {
            const RailResult& rail = now.rails[i];
            auto period = findRail(m_side->rails, rail.name, i);
            if (period == m_side->rails.end())
                period = m_side->rails.insert(period, {rail.name, 0.0, 0.0, 0.0, ""});
            if (share > 0.0)
                period->watts += share * (rail.watts() + wattsBefore(rail, i));
            period->peakWatts = std::max(period->peakWatts, rail.watts());
            if (rail.amperes() > period->peakAmperes || period->peakMode.empty()) {
                period->peakAmperes = rail.amperes();
                period->peakMode = nameOf(m_mode.mode);
            }
        }
    }

    double wattsBefore(const RailResult& rail, std::size_t expected) const
    {
        const auto before = findRail(m_before->rails, rail.name, expected);
        return before != m_before->rails.end() ? before->watts() : rail.watts();
    }

    void addTree(const Side& now, double share)
    {
        if (!now.supplies)
            return;
        m_side->supplies.resize(now.supplies->supplies.size());
        for (std::size_t i = 0; i < now.supplies->supplies.size(); ++i) {
            const SupplyResult& supply = now.supplies->supplies[i];
            SupplyPeriod& period = m_side->supplies[i];
            const double before = share > 0.0 ? m_before->supplies->supplies[i].inputWatts : supply.inputWatts;
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
    const Side* m_before = nullptr; // of the moment before
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
void addLasting(PeriodSum& sum, PeriodSide& side, const std::vector<EstimatedMode>& modes,
                std::vector<ModeAtWork>& atWork, std::size_t index)
{
    for (std::size_t i = 0; i < modes.size() && side.settles; ++i) {
        const Side& alone = modes[i].estimate->sides[index];
        side.settles = alone.settles();
        if (side.settles)
            sum.addLasting({0.0, i, alone.junction, atWork[i].watts(alone.junction), 0.0}, atWork[i]);
        else
            side.words = fmt::format("mode \"{}\", if it lasts: {}; thermal stages would tell how fast it gets there",
                                     sum.nameOf(i), alone.thermal->words);
    }
}

std::vector<ModeAtWork> atWorkOn(const std::vector<EstimatedMode>& modes, std::size_t side)
{
    std::vector<ModeAtWork> atWork;
    atWork.reserve(modes.size());
    for (const EstimatedMode& mode : modes)
        atWork.emplace_back(mode, side);
    return atWork;
}

void addSide(Estimate& estimate, const std::vector<EstimatedMode>& modes, std::size_t index)
{
    Period& period = *estimate.period;
    PeriodSide side;
    side.process = estimate.sides[index].process;
    std::vector<ModeAtWork> atWork = atWorkOn(modes, index);
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

void addPeriod(Estimate& estimate, const std::vector<EstimatedMode>& modes)
{
    Period& period = estimate.period.emplace();
    for (std::size_t i = 0; i < modes.size(); ++i) {
        const Mode& mode = estimate.design.modes[i];
        addWarnings(estimate, *modes[i].estimate, mode.name);
        ModeResult result{mode.name, mode.seconds, modes[i].estimate->dynamicWatts, {}, {}};
        for (const GroupResult& group : modes[i].estimate->groups)
            result.groupWatts.push_back(group.watts);
        period.modes.push_back(std::move(result));
        period.seconds += mode.seconds;
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
        for (std::size_t place = 0; place < worst.rails.size(); ++place) {
            const RailPeriod& period = worst.rails[place];
            auto rail = findRail(side.rails, period.rail, place);
            if (rail == side.rails.end())
                rail = side.rails.insert(rail, {period.rail, "", 0.0, 0.0, 0.0, 0.0, 0.0, 0.0});
            rail->dynamicAmperes = period.peakAmperes;
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
    std::vector<Estimate> estimates;
    for (const Mode& mode : design.modes)
        estimates.push_back(zelm::host::estimate(*mode.design, Curves::none, Gaps::warned));
    std::vector<std::shared_ptr<StaticPower>> powers;
    std::vector<EstimatedMode> modes;
    for (const Estimate& one : estimates.empty() ? std::span(&estimate, 1) : std::span(estimates)) {
        powers.push_back(staticPowerOf(one));
        modes.push_back({&one, powers.back().get()});
    }
    for (std::size_t index = 0; index < estimate.sides.size(); ++index) {
        const std::vector<ModeAtWork> atWork = atWorkOn(modes, index);
        std::vector<Phase> phases = estimate.period ? phasesOf(atWork, estimate.period->modes) : std::vector<Phase>();
        if (!estimate.period)
            phases.push_back({design.stages.front().tau, [&](double junction) { return atWork[0].watts(junction); }});
        for (const JunctionBand& band : warmUpFrom(design.stages, phases, *design.environment.ambient, whiles))
            estimate.sides[index].startUp.push_back({band.seconds, band.lowest, band.highest});
    }
}

} // namespace zelm::host

#include "host/estimate/Transient.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <map>
#include <memory>
#include <numeric>

namespace zelm::host {

namespace {

constexpr double kTolerance = 1e-4; // degrees; well below the 0.01 that reports show
constexpr double kTableStep = 0.5;  // degrees
constexpr double kTooHot = 200.0;   // beyond it the extrapolated curves say nothing any more

// How a stage forgets and takes up power that is linear over a step: exact, whatever the step.
struct Response {
    double kept;   ///< of the rise at the step's begin
    double steady; ///< of r x the power at the step's begin
    double ramp;   ///< of r x the power's change

    Response(const ThermalStage& stage, double step)
    {
        const double u = step / stage.tau;
        steady = -std::expm1(-u);
        kept = 1.0 - steady;
        constexpr double small = 1e-4; // where the difference would lose its digits
        ramp = u < small ? u * (0.5 - u / 6.0) : 1.0 - steady / u;
    }
};

struct Walk {
    double seconds = 0.0;
    std::vector<double> rises;
    std::vector<double> forced; ///< the part of the rises that the power since the begin made
    double junction = 0.0;
    double watts = 0.0;
};

class Network {
public:
    Network(const std::vector<ThermalStage>& stages, double ambient) : m_stages(&stages), m_ambient(ambient)
    {
        for (const ThermalStage& stage : stages)
            m_resistance += stage.r;
    }

    double resistance() const
    {
        return m_resistance;
    }

    Walk begin(const std::vector<double>& rises) const
    {
        Walk walk{0.0, rises, std::vector<double>(rises.size(), 0.0), 0.0, 0.0};
        walk.junction = junctionOf(rises);
        return walk;
    }

    // Where a step leads if the power is linear over it and right at its ends.
    Walk stepped(const Walk& from, double step, const PowerCurve& power) const
    {
        std::vector<Response> responses;
        for (const ThermalStage& stage : *m_stages)
            responses.emplace_back(stage, step);
        Walk to = from;
        to.seconds += step;
        constexpr int most = 60;
        for (int i = 0; i < most; ++i) {
            const double before = to.watts;
            for (std::size_t s = 0; s < responses.size(); ++s) {
                const Response& response = responses[s];
                const double heat =
                    (*m_stages)[s].r * (from.watts * response.steady + (to.watts - from.watts) * response.ramp);
                to.rises[s] = from.rises[s] * response.kept + heat;
                to.forced[s] = from.forced[s] * response.kept + heat;
            }
            to.junction = junctionOf(to.rises);
            if (!(to.junction < kTooHot))
                break;
            to.watts = power(to.junction);
            if (std::fabs(to.watts - before) * m_resistance < 0.01 * kTolerance)
                break;
        }
        return to;
    }

    // How fast the junction rises when a walk stands there.
    double slopeAt(const Walk& walk) const
    {
        double slope = 0.0;
        for (std::size_t s = 0; s < m_stages->size(); ++s)
            slope += ((*m_stages)[s].r * walk.watts - walk.rises[s]) / (*m_stages)[s].tau;
        return slope;
    }

    // Through a phase, telling each point; false if the junction runs away. Each step is halved until that changes the
    // junction, and what the step's power would heat if it went on, by less than the tolerance.
    bool walk(Walk& here, const Phase& phase, const std::function<void(const Walk&)>& tell) const
    {
        const double begin = here.seconds;
        const double longest = phase.seconds / 32.0;
        const double shortest = 1e-9 * phase.seconds;
        double step = std::clamp(shortestTau() / 16.0, shortest, longest);
        double done = 0.0; // of the phase, which may be short beside the time that has passed
        here.watts = phase.power(here.junction);
        tell(here);
        while (done < phase.seconds) {
            const double left = phase.seconds - done;
            const bool last = step >= left * (1.0 - 1e-9);
            const double size = last ? left : step;
            const Walk whole = stepped(here, size, phase.power);
            const Walk half = stepped(here, 0.5 * size, phase.power);
            const Walk halves = stepped(half, 0.5 * size, phase.power);
            if (!(halves.junction < kTooHot))
                return false;
            const double power = 0.25 * (here.watts + 2.0 * half.watts + halves.watts);
            const double error = std::max(std::fabs(whole.junction - halves.junction),
                                          m_resistance * std::fabs(0.5 * (here.watts + whole.watts) - power));
            if (error > kTolerance && size > shortest) {
                step = 0.5 * size;
                continue;
            }
            tellTurn(here, half, 0.5 * size, phase.power, tell);
            tell(half);
            tellTurn(half, halves, 0.5 * size, phase.power, tell);
            here = halves;
            done = last ? phase.seconds : done + size;
            here.seconds = begin + done;
            tell(here);
            if (error < 0.125 * kTolerance)
                step = std::min(longest, 2.0 * step);
        }
        return true;
    }

private:
    double junctionOf(const std::vector<double>& rises) const
    {
        return std::accumulate(rises.begin(), rises.end(), m_ambient);
    }

    double shortestTau() const
    {
        double tau = HUGE_VAL;
        for (const ThermalStage& stage : *m_stages)
            tau = std::min(tau, stage.tau);
        return tau;
    }

    // Where the junction turns between two points.
    void tellTurn(const Walk& from, const Walk& to, double step, const PowerCurve& power,
                  const std::function<void(const Walk&)>& tell) const
    {
        const bool rising = slopeAt(from) > 0.0;
        if (rising == (slopeAt(to) > 0.0) || slopeAt(from) == 0.0 || slopeAt(to) == 0.0)
            return;
        double low = 0.0;
        double high = step;
        Walk turn = to;
        for (int i = 0; i < 30; ++i) {
            const double middle = 0.5 * (low + high);
            turn = stepped(from, middle, power);
            ((slopeAt(turn) > 0.0) == rising ? low : high) = middle;
        }
        tell(turn);
    }

    const std::vector<ThermalStage>* m_stages;
    double m_ambient;
    double m_resistance = 0.0;
};

// What a period makes of the rises with which it begins: nothing where the junction runs away.
struct Round {
    bool settles = true;
    std::vector<double> next; ///< with which it would begin if it ended so, were its power what it was
    std::vector<TransientPoint> points;
};

Round roundFrom(const Network& network, const std::vector<ThermalStage>& stages, const std::vector<Phase>& phases,
                const std::vector<double>& rises)
{
    Round round;
    Walk walk = network.begin(rises);
    for (std::size_t phase = 0; phase < phases.size() && round.settles; ++phase)
        round.settles = network.walk(walk, phases[phase], [&](const Walk& at) {
            round.points.push_back({at.seconds, phase, at.junction, at.watts});
        });
    for (std::size_t s = 0; s < stages.size(); ++s)
        round.next.push_back(walk.forced[s] / -std::expm1(-walk.seconds / stages[s].tau));
    return round;
}

double largest(const std::vector<double>& values)
{
    double most = 0.0;
    for (const double value : values)
        most = std::max(most, std::fabs(value));
    return most;
}

std::vector<double> difference(const std::vector<double>& a, const std::vector<double>& b)
{
    std::vector<double> result;
    for (std::size_t i = 0; i < a.size(); ++i)
        result.push_back(a[i] - b[i]);
    return result;
}

// The next guess from this and the last one: the fixed point if the way to it were a straight line.
std::vector<double> extrapolated(const std::vector<double>& next, const std::vector<double>& nextBefore,
                                 const std::vector<double>& gap, const std::vector<double>& gapBefore)
{
    const std::vector<double> change = difference(gap, gapBefore);
    const double size = std::inner_product(change.begin(), change.end(), change.begin(), 0.0);
    const double share = size > 0.0 ? std::inner_product(gap.begin(), gap.end(), change.begin(), 0.0) / size : 0.0;
    std::vector<double> guess;
    for (std::size_t i = 0; i < next.size(); ++i)
        guess.push_back(next[i] - share * (next[i] - nextBefore[i]));
    return guess;
}

} // namespace

PowerCurve averageOf(const std::vector<Phase>& phases)
{
    double period = 0.0;
    for (const Phase& phase : phases)
        period += phase.seconds;
    return [phases, period](double junction) {
        double joules = 0.0;
        for (const Phase& phase : phases)
            joules += phase.seconds * phase.power(junction);
        return joules / period;
    };
}

PowerCurve tabled(PowerCurve curve)
{
    struct Table {
        PowerCurve curve;
        std::map<int, double> known;

        double at(int index)
        {
            const auto [entry, isNew] = known.try_emplace(index);
            if (isNew)
                entry->second = curve(kTableStep * index);
            return entry->second;
        }
    };
    return [table = std::make_shared<Table>(Table{std::move(curve), {}})](double junction) {
        const double place = junction / kTableStep;
        const int index = static_cast<int>(std::floor(place));
        const double t = place - index;
        // Lagrange's polynomial through two points on either side.
        return table->at(index - 1) * (-t * (t - 1.0) * (t - 2.0) / 6.0) +
               table->at(index) * ((t + 1.0) * (t - 1.0) * (t - 2.0) / 2.0) +
               table->at(index + 1) * (-(t + 1.0) * t * (t - 2.0) / 2.0) +
               table->at(index + 2) * ((t + 1.0) * t * (t - 1.0) / 6.0);
    };
}

PeriodicState periodicState(const std::vector<ThermalStage>& stages, const std::vector<Phase>& phases, double ambient)
{
    PeriodicState state;
    const Network network(stages, ambient);
    const OperatingPoint average = findOperatingPoint(averageOf(phases), ambient, network.resistance());
    if (!average.converged) {
        state.words = average.words;
        return state;
    }
    std::vector<double> guess;
    for (const ThermalStage& stage : stages)
        guess.push_back(stage.r * average.power);
    std::vector<double> nextBefore;
    std::vector<double> gapBefore;
    constexpr int most = 100;
    for (int i = 0; i < most; ++i) {
        Round round = roundFrom(network, stages, phases, guess);
        if (!round.settles)
            break;
        const std::vector<double> gap = difference(round.next, guess);
        if (largest(gap) < kTolerance) {
            state.found = true;
            state.points = std::move(round.points);
            state.rises = guess;
            return state;
        }
        guess = gapBefore.empty() ? round.next : extrapolated(round.next, nextBefore, gap, gapBefore);
        nextBefore = round.next;
        gapBefore = gap;
    }
    state.words = "thermal runaway: within the period the junction leaves what the average would settle at";
    return state;
}

std::vector<JunctionBand> warmUpFrom(const std::vector<ThermalStage>& stages, const std::vector<Phase>& phases,
                                     double ambient, std::size_t whiles)
{
    double period = 0.0;
    for (const Phase& phase : phases)
        period += phase.seconds;
    double span = 0.0;
    for (const ThermalStage& stage : stages)
        span = std::max(span, 5.0 * stage.tau);
    constexpr double mostPeriods = 300.0;
    const double periods = std::ceil(span / period);
    span = std::max(1.0, periods) * period;
    const std::vector<Phase> repeated = periods > mostPeriods ? std::vector<Phase>{{span, averageOf(phases)}} : phases;
    const Network network(stages, ambient);
    const double length = span / static_cast<double>(whiles);
    std::vector<JunctionBand> bands;
    double last = ambient;
    Walk walk = network.begin(std::vector<double>(stages.size(), 0.0));
    const auto tell = [&](const Walk& at) {
        const auto index = std::min(static_cast<std::size_t>(at.seconds / length), whiles - 1);
        // A while begins with the point before it: the next may lie whiles later.
        while (bands.size() <= index) {
            const double before = bands.empty() ? at.junction : last;
            bands.push_back({length * static_cast<double>(bands.size() + 1), std::min(before, at.junction),
                             std::max(before, at.junction)});
        }
        bands[index].lowest = std::min(bands[index].lowest, at.junction);
        bands[index].highest = std::max(bands[index].highest, at.junction);
        last = at.junction;
    };
    while (walk.seconds < span * (1.0 - 1e-9)) {
        for (const Phase& phase : repeated) {
            if (!network.walk(walk, phase, tell))
                return bands;
        }
    }
    return bands;
}

} // namespace zelm::host

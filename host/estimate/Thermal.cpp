#include "host/estimate/Thermal.h"

#include <boost/math/tools/minima.hpp>
#include <boost/math/tools/roots.hpp>
#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace zelm::host {

namespace {

constexpr double kHottestTried = 200.0; // beyond it the extrapolated curves say nothing any more
constexpr double kPrecision = 1e-4;     // degrees; well below the 0.01 that reports show

double slope(const PowerCurve& power, double junction)
{
    constexpr double step = 0.05;
    return (power(junction + step) - power(junction - step)) / (2.0 * step);
}

double root(const std::function<double(double)>& f, double low, double high)
{
    std::uintmax_t iterations = 100;
    const auto bracket = boost::math::tools::toms748_solve(
        f, low, high, [](double a, double b) { return std::fabs(a - b) < kPrecision; }, iterations);
    return 0.5 * (bracket.first + bracket.second);
}

// Where f is greatest between low and high. f rises, or rises and then falls: if it still rises at the end, that is it.
double argmax(const std::function<double(double)>& f, double low, double high)
{
    constexpr double step = 0.01;
    constexpr int bits = 20;
    if (f(high) >= f(high - step))
        return high;
    return boost::math::tools::brent_find_minima([&](double x) { return -f(x); }, low, high, bits).first;
}

} // namespace

namespace {

// The excess of the heat flow over what the junction needs to stay where it is.
using Excess = std::function<double(double junction)>;

// Where a device that warms up from ambient settles. A step by the whole excess can't pass the first equilibrium where
// power rises with temperature; nor can one to the zero of the line through the last two points where it rises ever
// faster, as leakage does. Nothing if the steps lead nowhere, which the steps alone don't prove to be a runaway.
std::optional<double> warmUp(const Excess& excess, double ambient)
{
    double before = ambient;
    double excessBefore = excess(before);
    if (excessBefore <= 0.0)
        return before;
    double here = before + excessBefore;
    while (here < kHottestTried) {
        const double excessHere = excess(here);
        if (excessHere <= 0.0)
            return root(excess, before, here);
        const double fall = (excessBefore - excessHere) / (here - before);
        if (!(fall > 0.0))
            return std::nullopt;
        const double step = excessHere / fall;
        if (step < kPrecision)
            return here + step;
        before = here;
        excessBefore = excessHere;
        here += step;
    }
    return std::nullopt;
}

// The same for any curve, slowly: looks everywhere, and within the steps next to where the excess is least. The steps
// end at the same temperatures whatever the ambient, where a curve that remembers itself is known from other points.
std::optional<double> search(const Excess& excess, double ambient)
{
    constexpr double step = 2.5;
    constexpr int bits = 16; // of where the excess is least; there it is flat
    double coolest = ambient;
    double least = excess(ambient);
    double high = ambient;
    while (high < kHottestTried) {
        const double low = high;
        high = step * (std::floor(low / step) + 1.0);
        const double here = excess(high);
        if (here <= 0.0)
            return root(excess, low, high);
        if (here < least) {
            least = here;
            coolest = high;
        }
    }
    const auto [junction, lowest] =
        boost::math::tools::brent_find_minima(excess, std::max(ambient, coolest - step), coolest + step, bits);
    return lowest <= 0.0 ? std::optional(root(excess, std::max(ambient, coolest - step), junction)) : std::nullopt;
}

} // namespace

OperatingPoint findOperatingPoint(const PowerCurve& power, double ambient, double thetaJA)
{
    const Excess excess = [&](double junction) { return ambient + thetaJA * power(junction) - junction; };
    OperatingPoint point;
    if (const double watts = power(ambient); !(watts >= 0.0)) {
        point.junction = ambient;
        point.power = watts;
        point.words = fmt::format("no operating point: the power at ambient is {:g} W, which no device has", watts);
        return point;
    }
    std::optional<double> junction = warmUp(excess, ambient);
    if (!junction)
        junction = search(excess, ambient);
    if (junction) {
        point.junction = *junction;
        point.loopGain = thetaJA * slope(power, point.junction);
        point.power = power(point.junction); // last: who asks for more at this temperature finds most of it computed
        point.converged = point.loopGain < 1.0;
        point.words =
            point.converged
                ? fmt::format("settles at {:.2f} degrees: a rise of 1 degree adds {:.3f} degrees of heating, which is "
                              "below 1",
                              point.junction, point.loopGain)
                : fmt::format("thermal runaway: at {:.2f} degrees a rise of 1 degree adds {:.3f} degrees of heating",
                              point.junction, point.loopGain);
        return point;
    }
    // No equilibrium: name the temperature at which the loop gain reached 1, where the last hope ended.
    double gainOne = std::ceil(ambient);
    while (gainOne < kHottestTried && thetaJA * slope(power, gainOne) < 1.0)
        gainOne += 1.0;
    point.junction = kHottestTried;
    point.power = power(std::min(gainOne, kHottestTried));
    point.loopGain = thetaJA * slope(power, gainOne);
    point.words =
        gainOne < kHottestTried
            ? fmt::format("thermal runaway: no junction temperature balances the heat; from {:.0f} degrees on "
                          "each degree of rise adds at least one more degree of heating",
                          gainOne)
            : fmt::format("no equilibrium below {:.0f} degrees: the power is too high for this cooling", kHottestTried);
    return point;
}

double highestAmbient(const PowerCurve& power, double thetaJA, double junctionLimit)
{
    // The ambient that goes with a junction; past its greatest value the loop gain is above 1 and nothing settles.
    const auto ambientFor = [&](double junction) { return junction - thetaJA * power(junction); };
    return ambientFor(argmax(ambientFor, std::min(kColdestCharacterised, junctionLimit - 1.0), junctionLimit));
}

std::optional<double> largestThetaJA(const PowerCurve& power, double ambient, double junctionLimit)
{
    if (junctionLimit < ambient)
        return std::nullopt;
    const auto thetaFor = [&](double junction) {
        const double watts = power(junction);
        return watts > 0.0 ? (junction - ambient) / watts : HUGE_VAL;
    };
    return thetaFor(argmax(thetaFor, ambient, junctionLimit));
}

} // namespace zelm::host

#pragma once

#include "host/estimate/OperatingPoint.h"

#include <functional>
#include <optional>

namespace zelm::host {

/// The range over which the leakage curves are characterised, degrees Celsius.
inline constexpr double kColdestCharacterised = -40.0;
inline constexpr double kHottestCharacterised = 125.0;

/// Power in watts at a junction temperature.
using PowerCurve = std::function<double(double junction)>;

/// The junction temperature at which ambient + thetaJA x power(junction) is the junction itself: the lowest, which is
/// the one that a device warming up from ambient settles at.
OperatingPoint findOperatingPoint(const PowerCurve& power, double ambient, double thetaJA);

/// The highest ambient temperature at which the junction settles at or below the limit.
double highestAmbient(const PowerCurve& power, double thetaJA, double junctionLimit);

/// The largest thetaJA at which the junction settles at or below the limit; nothing if even thetaJA 0 is too much.
std::optional<double> largestThetaJA(const PowerCurve& power, double ambient, double junctionLimit);

} // namespace zelm::host

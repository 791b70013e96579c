#pragma once

#include "host/design/Modes.h"
#include "host/estimate/Thermal.h"

#include <cstddef>
#include <string>
#include <vector>

namespace zelm::host {

/// A stretch of time in which the power depends on the junction temperature only.
struct Phase {
    double seconds = 0.0;
    PowerCurve power; ///< all of it, W
};

struct TransientPoint {
    double seconds = 0.0; ///< from the begin
    std::size_t phase = 0;
    double junction = 0.0;
    double watts = 0.0;
};

/// Phases that repeat for ever. Between its points power is linear within 1e-4 degrees of what that heats.
struct PeriodicState {
    bool found = false;
    std::string words;                  ///< why there is none
    std::vector<TransientPoint> points; ///< each phase from its begin to its end, extremes among them
    std::vector<double> rises;          ///< of each stage as the period begins, degrees
};

/// The state in which a period ends as it began: of a Foster network in an ambient, fed by phases of power.
PeriodicState periodicState(const std::vector<ThermalStage>& stages, const std::vector<Phase>& phases, double ambient);

/// Between which temperatures the junction moves in a while that ends then.
struct JunctionBand {
    double seconds = 0.0;
    double lowest = 0.0;
    double highest = 0.0;
};

/// How the junction warms up from ambient, in that many whiles of like length: phases repeat until five times the
/// longest time constant, and at least one period, is over. Where that makes too many periods, each runs at the phases'
/// average. Ends early where the junction runs away.
std::vector<JunctionBand> warmUpFrom(const std::vector<ThermalStage>& stages, const std::vector<Phase>& phases,
                                     double ambient, std::size_t whiles);

/// The power of phases in time's average.
PowerCurve averageOf(const std::vector<Phase>& phases);

/// The same curve by a table at half degrees, filled as it is asked for, cubic between.
PowerCurve tabled(PowerCurve curve);

} // namespace zelm::host

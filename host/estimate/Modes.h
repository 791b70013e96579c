#pragma once

#include "host/estimate/Estimate.h"

#include <vector>

namespace zelm::host {

class StaticPower;

/// A mode as a design of its own.
struct EstimatedMode {
    const Estimate* estimate = nullptr;
    StaticPower* power = nullptr; ///< null without a device
};

/// Adds the period of the design's modes to an estimate of the design without them. With thermal stages the junction
/// follows the power in time, else it stands where the average power settles.
void addPeriod(Estimate& estimate, const std::vector<EstimatedMode>& modes);

/// The sides of an estimate at their worst: those of the design, or the worst moments of its modes.
std::vector<Side> worstMoments(const Estimate& estimate);

/// How the junction warms up from ambient over many periods, or with the design's one power. An Error if the design has
/// no thermal stages.
void addStartUp(Estimate& estimate);

} // namespace zelm::host

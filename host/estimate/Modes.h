#pragma once

#include "host/estimate/Estimate.h"

namespace zelm::host {

/// Adds the period of the design's modes, each an estimate of its own, to an estimate of the design without them. With
/// thermal stages the junction follows the power in time, else it stands where the average power settles.
void addModes(Estimate& estimate, Gaps gaps);

/// The sides of an estimate at their worst: those of the design, or the worst moments of its modes.
std::vector<Side> worstMoments(const Estimate& estimate);

/// How the junction warms up from ambient over many periods, or with the design's one power. An Error if the design has
/// no thermal stages.
void addStartUp(Estimate& estimate);

} // namespace zelm::host

#pragma once

#include "host/estimate/Results.h"

#include <cstddef>
#include <string>
#include <vector>

namespace zelm::host {

/// What groups are added up by: their place in the hierarchy, block, rail or clock.
enum class By { in, block, rail, clock };

/// What some groups come to together, dynamic power alone.
struct Subtotal {
    std::string name;      ///< empty for groups that stand in no hierarchy, or name no clock
    std::size_t depth = 0; ///< in the hierarchy: "datapath/fir" is one deeper than "datapath", which holds it
    std::size_t groups = 0;
    double watts = 0.0;
    double amperes = 0.0; ///< only of a rail
    double offchipWatts = 0.0;
};

/// Each name once, in the order of the design's groups; parts of the hierarchy stand behind what holds them.
std::vector<Subtotal> subtotals(const Estimate& estimate, By by);

} // namespace zelm::host

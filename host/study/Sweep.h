#pragma once

#include "host/base/JsonFwd.h"
#include "host/estimate/Estimate.h"

#include <chrono>
#include <string>
#include <vector>

namespace zelm::host {

/// A place in a design and the values that it takes in turn.
struct Variation {
    std::string path;
    std::vector<Json> values;
    std::string unit{}; ///< in which values that are numbers count, if the variation or its parameter says one
};

struct SweepPoint {
    std::vector<Json> values; ///< one of each variation
    Estimate estimate;
};

struct Sweep {
    std::vector<Variation> variations;
    std::vector<SweepPoint> points; ///< the last variation changes fastest
};

/// Estimates a design once for each combination of values. A variation is "PATH=FROM:TO:STEP" or
/// "PATH=VALUE,VALUE,...", with a path as messages about designs write it: "environment.ambientTemperature",
/// "rails.VCCINT", "groups[2].inputs.CLOCK_FREQ", "parameters.fclk"; a group's name may stand for its index, and values
/// may have units: "100MHz:400MHz:50MHz". Plain numbers count in the unit of the parameter that they replace. An Error
/// tells what is wrong with a variation, or at which point the design is. A progress bar shows after that time.
Sweep sweep(const std::string& designFile, const std::vector<std::string>& variations,
            std::chrono::milliseconds barAfter, Gaps gaps = Gaps::refused);

/// A varied value as people write it.
std::string sweepWord(const Json& value);
/// What varies, for the head of a table: "parameters.fclk [MHz]".
std::string sweepName(const Variation& variation);

} // namespace zelm::host

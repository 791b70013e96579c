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
/// "rails.VCCINT", "groups[2].inputs.CLOCK_FREQ"; a group's name may stand for its index. An Error tells what is wrong
/// with a variation, or at which point the design is. A progress bar shows after that time.
Sweep sweep(const std::string& designFile, const std::vector<std::string>& variations,
            std::chrono::milliseconds barAfter, Gaps gaps = Gaps::refused);

/// A varied value as people write it.
std::string sweepWord(const Json& value);

} // namespace zelm::host

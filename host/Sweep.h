#pragma once

#include <string>
#include <vector>

namespace zelm::host {

enum class SweepFormat { table, json, csv };

/// Estimates a design once for each combination of values, the last variation changing fastest. A variation is
/// "PATH=FROM:TO:STEP" or "PATH=VALUE,VALUE,...", with a path as messages about designs write it:
/// "environment.ambientTemperature", "rails.VCCINT", "groups[2].inputs.CLOCK_FREQ"; a group's name may stand for its
/// index. An Error tells what is wrong with a variation, or at which point the design is.
std::string sweep(const std::string& designFile, const std::vector<std::string>& variations, SweepFormat format);

} // namespace zelm::host

#pragma once

#include "host/Estimate.h"
#include "host/JsonFwd.h"
#include "host/Terminal.h"

#include <string>

namespace zelm::host {

/// The estimate as tables for a terminal; verbose adds the inputs and what was carried where.
std::string textReport(const Estimate& estimate, bool verbose, const Paint& paint = Paint());
/// The estimate as JSON, all of it.
Json jsonReport(const Estimate& estimate);
/// One row per group and rail, then one per rail and process.
std::string csvReport(const Estimate& estimate);
/// The budgets as JUnit's XML, for a CI.
std::string junitReport(const Estimate& estimate);

} // namespace zelm::host

#pragma once

#include "host/base/JsonFwd.h"
#include "host/base/Terminal.h"
#include "host/study/Diff.h"
#include "host/study/Fit.h"
#include "host/study/Sensitivity.h"
#include "host/study/Solve.h"

#include <cstddef>
#include <optional>
#include <string>

namespace zelm::host {

std::string solveText(const Solution& solution, const Paint& paint);
Json solveJson(const Solution& solution);

/// The first so many inputs; without a number all of them.
std::string sensitivityText(const Sensitivity& all, std::size_t top);
Json sensitivityJson(const Sensitivity& all, std::optional<std::size_t> top);
/// A tornado of the first so many inputs, and all of them as a table.
std::string sensitivityHtml(const Sensitivity& all, std::size_t top);

std::string diffText(const Diff& diff);
Json diffJson(const Diff& diff);
/// Waterfalls of what changes, and tables.
std::string diffHtml(const Diff& diff);

/// Verbose adds what each part lacks and breaks.
std::string fitText(const Fit& fit, bool verbose, const Paint& paint);
Json fitJson(const Fit& fit);

} // namespace zelm::host

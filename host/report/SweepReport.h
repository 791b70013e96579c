#pragma once

#include "host/base/Terminal.h"
#include "host/study/Sweep.h"

#include <cstddef>
#include <functional>
#include <string_view>

namespace zelm::host {

enum class SweepFormat { table, csv, json };

/// Runs a sweep and prints its points as they finish, whole lines only. The number of points that warn of something.
std::size_t printSweep(const Sweep& sweep, const SweepRun& options, SweepFormat format, const Paint& paint,
                       const std::function<void(std::string_view)>& print);

} // namespace zelm::host

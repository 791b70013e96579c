#pragma once

#include "host/base/Terminal.h"
#include "host/study/Sweep.h"

#include <string>

namespace zelm::host {

enum class SweepFormat { table, json, csv };

std::string sweepReport(const Sweep& sweep, SweepFormat format, const Paint& paint = Paint());

} // namespace zelm::host

#pragma once

#include "host/estimate/Results.h"

namespace zelm::host {

/// Whether sides get their curve: it takes most of the formulas' time, and only some reports draw it.
enum class Curves { none, drawn };

Estimate estimate(const Design& design, Curves curves = Curves::none);

} // namespace zelm::host

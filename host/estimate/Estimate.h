#pragma once

#include "host/estimate/Results.h"

namespace zelm::host {

/// Whether sides get their curve: it takes most of the formulas' time, and only some reports draw it.
enum class Curves { none, drawn };

/// What a group is whose inputs have no row in the data, or that yields no number: an Error, or a warning for people
/// with partial data.
enum class Gaps { refused, warned };

Estimate estimate(const Design& design, Curves curves = Curves::none, Gaps gaps = Gaps::refused);

} // namespace zelm::host

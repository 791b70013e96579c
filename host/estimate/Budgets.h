#pragma once

#include "host/estimate/Results.h"

namespace zelm::host {

/// Holds an estimate's sums against the design's budgets, regulators and junction limit.
void checkBudgets(Estimate& estimate);

} // namespace zelm::host

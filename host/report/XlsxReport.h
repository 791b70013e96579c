#pragma once

#include "host/estimate/Results.h"

#include <string>

namespace zelm::host {

/// The estimate as the bytes of a workbook: summary, groups, currents, rails, supplies, budgets, inputs. What follows
/// from other numbers is a formula, so that a reader may write over the models' watts and static currents, volts and
/// limits.
std::string xlsxReport(const Estimate& estimate);

} // namespace zelm::host

#pragma once

#include "host/Estimate.h"

#include <string>

namespace zelm::host {

/// The estimate as one page that needs no network: tables, charts, every group's inputs.
std::string htmlReport(const Estimate& estimate);

} // namespace zelm::host

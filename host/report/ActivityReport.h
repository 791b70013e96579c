#pragma once

#include "host/base/JsonFwd.h"
#include "host/exchange/Activity.h"

#include <string>

namespace zelm::host {

/// What the activity of a simulation was set in, and what stayed as it was, as a table.
std::string activityTable(const ActivityImport& activity);
Json activityJson(const ActivityImport& activity);

} // namespace zelm::host

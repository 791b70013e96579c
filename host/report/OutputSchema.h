#pragma once

#include "host/base/JsonFwd.h"

namespace zelm::host {

/// The JSON Schema of what the commands print with --json.
Json outputSchema();

} // namespace zelm::host

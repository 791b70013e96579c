#pragma once

#include "host/base/JsonFwd.h"

namespace zelm::host {

/// The JSON Schema of design files, from the cells of all blocks and the words of the data files.
Json designSchema();

} // namespace zelm::host

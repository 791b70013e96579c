#pragma once

#include "host/base/JsonFwd.h"

#include <string>

namespace zelm::host {

/// The place in a design that a path names, as messages about designs write it: "environment.ambientTemperature",
/// "groups[2].inputs.CLOCK_FREQ"; a group's name may stand for its index. What isn't there yet comes to be; the reading
/// of the design then tells whether it may. An Error, without the path, says what is wrong with it.
Json& placeAt(Json& root, const std::string& path);
/// The same, but null if it isn't there.
const Json* findPlace(const Json& root, const std::string& path);

} // namespace zelm::host

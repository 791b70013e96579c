#pragma once

#include <nlohmann/json_fwd.hpp>

namespace zelm::host {

/// Keeps the order of its fields. host/base/Json.h completes the type.
using Json = nlohmann::ordered_json;

} // namespace zelm::host

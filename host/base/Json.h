#pragma once

#include "host/base/JsonFwd.h"

#include <nlohmann/json.hpp>

#include <string>

namespace zelm::host {

/// The version of what commands print as JSON, whose first field "format" is: it grows when a field changes its name or
/// meaning, not when one is added.
inline constexpr int kJsonFormat = 1;

/// JSON as the tool prints it: indented, with a newline at the end. Bytes that aren't UTF-8 are replaced.
std::string jsonText(const Json& json);
/// The same on one line, for other programs.
std::string compactJson(const Json& json);
/// A value for a message: on one line, and not all of a long one.
std::string quoted(const Json& json);

/// The double with the shortest text that reads back as the same float: 0.72 and not 0.7200000286102295.
double shortest(float value);

/// A number as JSON; what JSON can't hold is null with a reason beside it.
void addNumber(Json& object, const std::string& name, double value);

} // namespace zelm::host

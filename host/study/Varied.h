#pragma once

#include "host/base/JsonFwd.h"

#include <optional>
#include <string>

namespace zelm::host {

// What options that vary a place of a design have in common: "PATH=..." with numbers that may have units.

/// An Error that says which variation is wrong.
[[noreturn]] void failVary(const std::string& variation, const std::string& message);
/// The place in the design that a variation's path names.
Json& variedPlace(Json& root, const std::string& path, const std::string& variation);
/// A number of a range, counted in the unit of the first one that has one. Nothing if the text is no number.
std::optional<double> variedNumber(const std::string& text, std::string& unit, const std::string& variation);
/// The unit that a place's value is written with; empty if there is none.
std::string writtenUnit(const Json& value);
/// Whether words stand for the values of a place.
bool takesWords(const Json& value, const std::string& path);
/// What a number is in a design: 4 rather than 4.0 where it is whole, for counts.
Json plainJson(double value);
/// A number as a text with its unit, if it has one.
Json withUnit(const Json& value, const std::string& unit);

} // namespace zelm::host

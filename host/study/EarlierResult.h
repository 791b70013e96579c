#pragma once

#include "host/base/JsonFwd.h"
#include "host/study/Diff.h"

#include <string>

namespace zelm::host {

// What "estimate --json" printed once, held against a design now.

bool isEarlierResult(const Json& json);

/// The design that came to the result, as far as the result tells: groups, part, process, ambient and cooling,
/// voltages. The rest is as in a design now. An Error, with the file's name, if the result isn't whole.
Design designOf(const Json& result, const Design& now, const std::string& file);

/// Lets quantities begin at what the result says. What the design before comes to today, in place of that, is a part of
/// its own: other data, or another version of the tool.
void startFrom(const Json& result, const Estimate& today, Diff& diff);

} // namespace zelm::host

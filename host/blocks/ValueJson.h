#pragma once

#include "host/base/JsonFwd.h"
#include "host/blocks/Block.h"

#include <string>

namespace zelm::host {

/// A cell's value as JSON; an unset one, or a number that JSON can't hold, is null with a reason beside it.
void addValue(Json& object, const std::string& name, const Value& value);

} // namespace zelm::host

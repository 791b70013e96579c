#pragma once

#include <string_view>

namespace zelm::host {

/// Where the value of an input came from.
enum class Origin : unsigned char { design, rails, device, carried, byDefault };

std::string_view originWord(Origin origin);

} // namespace zelm::host

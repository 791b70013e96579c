#pragma once

#include "host/blocks/Block.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zelm::host {

/// The names of all supply rails.
const std::vector<std::string>& railNames();

/// The place of a rail among these; nothing if there is none of its name.
std::optional<std::size_t> placeOfRail(std::string_view rail);

/// Whether a cell is an input of a supply rail's voltage. Its row tells which.
bool takesVolts(const ZelmCellInfo& cell);

/// Whether a device has a rail; so too if the data don't know the device.
bool hasRail(const std::string& device, const std::string& rail);

/// The rail whose static current holds this rail's too, empty if there is none.
std::string railHolding(const std::string& rail);

} // namespace zelm::host

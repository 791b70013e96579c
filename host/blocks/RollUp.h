#pragma once

#include "host/blocks/Block.h"

#include <span>
#include <string>
#include <string_view>

namespace zelm::host {

/// A block that estimates one unit of what an input counts: the tool multiplies.
struct PerUnit {
    std::string_view block;
    std::string_view cell;
};

std::span<const PerUnit> perUnit();

/// The bank rail of a voltage: 1.35 V is "VCCO135".
std::string_view bankRail(float volts);

} // namespace zelm::host

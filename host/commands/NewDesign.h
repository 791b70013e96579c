#pragma once

#include <string>

namespace zelm::host {

/// The part of a new design that names none, of middle size.
inline constexpr const char* kNewPart = "zq4410_ktba3310_1_MP_i_S";

/// A design to begin with, of a kind of template, for a part, with the supplies that it needs.
std::string newDesign(const std::string& kind, const std::string& part);

} // namespace zelm::host

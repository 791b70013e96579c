#pragma once

#include <string_view>

namespace zelm {

/// A measured current, a straight line over frequency in single precision. Data has the lines in the table CURRENT.
template <class Data>
float interfaceCurrent(const Data& data, std::string_view node, float frequency)
{
    const float slope = data.findCurrent(node, "SLOPE");
    const float constant = data.findCurrent(node, "CONST");
    return slope * frequency + constant;
}

} // namespace zelm

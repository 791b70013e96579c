#pragma once

#include "framework/ZelmKey.h"

namespace zelm {

/// A measured current, a straight line over frequency in single precision. The sheet has the lines in the table
/// CURRENT.
template <class Sheet>
float interfaceCurrent(const Sheet& sheet, const Key& node, float frequency)
{
    const float slope = sheet.findCurrent(node, "SLOPE");
    const float constant = sheet.findCurrent(node, "CONST");
    return slope * frequency + constant;
}

} // namespace zelm

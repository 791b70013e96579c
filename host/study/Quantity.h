#pragma once

#include "host/blocks/Block.h"
#include "host/estimate/Results.h"

#include <string>
#include <string_view>
#include <vector>

namespace zelm::host {

/// What people ask an estimate for: "total", "dynamic", "static" (W), "junction" (C), "rail:VCCINT" (A), "group:NAME"
/// (W, all its units), "group:NAME.CELL" (one unit, in the cell's unit), each with "@TYP" or "@MAX" behind it or,
/// unsaid, on the design's process side. A design's modes are another matter: this is the design as it stands.
struct NamedQuantity {
    enum class Kind { total, dynamic, staticPower, junction, rail, group, cell };

    Kind kind = Kind::total;
    std::string of;                     ///< the rail or group
    const ZelmCellInfo* cell = nullptr; ///< of the group
    std::string process;                ///< empty without a device, which has no process sides

    /// As it is asked for, always with the process side if there is one.
    std::string name() const;
    /// "W", "C", "A" or the cell's.
    std::string_view unit() const;

    bool operator==(const NamedQuantity&) const = default;
};

/// Reads a quantity's name, held against the rails, groups, cells and process sides of an estimate; an Error names the
/// nearest ones.
NamedQuantity namedQuantity(const std::string& text, const Estimate& estimate);

/// All that the estimate has, but cells: the totals, the junction, rails that are loaded and groups that draw power, on
/// each process side where it differs by side.
std::vector<NamedQuantity> quantitiesOf(const Estimate& estimate);

/// NaN where the device runs away. A rail that nothing loads draws 0; a group that is no longer there, too.
double valueOf(const NamedQuantity& quantity, const Estimate& estimate);

/// "41.43 W", "67.20 C"; "none" for NaN.
std::string amountText(double value, std::string_view unit);

} // namespace zelm::host

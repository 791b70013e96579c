#pragma once

#include <span>
#include <string_view>

namespace zelm::host {

/// A used count of the static power model, from what a block's groups use.
struct StaticCount {
    std::string_view staticCell;
    std::string_view block;
    std::string_view cell; ///< empty: the instances themselves
    int perCount;          ///< so many units are one count, the last one may be partly used
};
std::span<const StaticCount> staticCounts();

/// A resource that the catalogue counts, and a block that uses it.
struct ResourceUse {
    std::string_view resource;
    std::string_view block;
    std::string_view cell;   ///< empty: the instances themselves
    int perUnit = 1;         ///< so many units share one
    int each = 1;            ///< a unit takes so many
    std::string_view kind{}; ///< a string cell that must begin with a word for the group to count
    std::string_view word{};
};
std::span<const ResourceUse> resourceUses();

/// A block whose instances are pins of I/O banks.
struct BankKind {
    std::string_view block;
    std::string_view words; ///< in the names of the static model's counts and the catalogue's resources
    std::string_view volts; ///< the input that holds the bank's voltage
};
std::span<const BankKind> bankKinds();
/// The kind of a block, null if its instances aren't pins.
const BankKind* bankKindOf(std::string_view block);

/// An input that takes the frequency of the clock that a group names.
struct ClockInput {
    std::string_view block;
    std::string_view cell;
};
std::span<const ClockInput> clockInputs();
bool takesClock(std::string_view block);

/// What a block's groups load a clock with, as an input of the clock's accounting.
struct ClockLoad {
    std::string_view load; ///< the accounting's input
    std::string_view block;
    std::string_view cell;
    int each = 1;            ///< a unit is so many loads
    std::string_view kind{}; ///< a string cell that must begin with a word for the group to count
    std::string_view word{};
};
std::span<const ClockLoad> clockLoads();

/// A resource of the catalogue that an input of a clock's accounting takes: nets share the device with all its sites.
struct ClockSite {
    std::string_view cell;
    std::string_view resource;
};
std::span<const ClockSite> clockSites();

} // namespace zelm::host

#pragma once

#include "host/base/JsonFwd.h"
#include "host/study/Quantity.h"

#include <optional>
#include <string>
#include <vector>

namespace zelm::host {

/// What a changed input, group or setting does to a quantity. The parts of a quantity add up to its whole change.
struct DiffPart {
    std::string group; ///< empty: the device, its rails, its environment, or all groups together
    std::string input; ///< a cell or setting; "added", "removed", "data"; "interaction": what only changes together do
    double change = 0.0;
};

struct DiffQuantity {
    NamedQuantity quantity;
    double before = 0.0; ///< NaN if it isn't known, or the device runs away
    double after = 0.0;
    std::vector<DiffPart> parts; ///< largest first; empty if before or after isn't known

    double change() const
    {
        return after - before;
    }
};

/// A value that differs; empty where it isn't set.
struct DiffInput {
    std::string place;
    std::string before;
    std::string after;
};

struct DiffGroup {
    enum class Fate { added, removed, renamed, changed };

    Fate fate = Fate::changed;
    std::string name;   ///< in the new design, or in the old one if it is removed
    std::string before; ///< its name there, if it is renamed
    double wattsBefore = 0.0;
    double wattsAfter = 0.0;
    std::vector<DiffInput> inputs;
};

struct Diff {
    std::string before; ///< names of the designs
    std::string after;
    std::vector<DiffGroup> groups;        ///< those that the change of power is largest of first
    std::vector<DiffInput> settings;      ///< outside of groups
    std::vector<DiffQuantity> quantities; ///< total first, those that don't change last

    /// The total on the new design's process side.
    const DiffQuantity& total() const;
};

/// What is held against a design: another design, or what "estimate --json" printed.
struct DiffWish {
    std::string before;                 ///< file
    std::string after;                  ///< file
    const Json* beforeResult = nullptr; ///< what the design before came to, if that was with other data
};

/// Tells what differs and what that does. Each change is made to the old design alone; what is left is interaction.
Diff diff(const DiffWish& wish);

/// How much more a total may be: "2%" or "500mW". An Error says what is wrong with the text.
struct Allowance {
    double amount = 0.0;
    bool isShare = false;

    /// Whether the quantity grows by more. What isn't known any more is more.
    bool isExceededBy(const DiffQuantity& total) const;
};
Allowance allowance(const std::string& text);

} // namespace zelm::host

#pragma once

#include "host/design/Design.h"
#include "host/estimate/ModeResults.h"
#include "host/estimate/OperatingPoint.h"
#include "host/estimate/Origin.h"
#include "host/estimate/SupplyResults.h"

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace zelm::host {

/// An input of a group as it entered the formulas.
struct InputValue {
    std::string_view cell;
    std::string_view unit;
    Value value;
    Origin origin = Origin::byDefault;
};

/// What one output adds to a rail.
struct Contribution {
    std::string_view cell;
    std::string_view rail;
    double watts = 0.0;
    double amperes = 0.0;
};

struct GroupResult {
    std::string name;
    const Block* block = nullptr;
    int count = 1;
    std::vector<InputValue> inputs;
    std::vector<Contribution> contributions;
    double watts = 0.0;        ///< on the chip, all rails
    double offchipWatts = 0.0; ///< burnt outside the device; negative where the standard's formulas say so
    bool onlyCarries = false;  ///< works out inputs of other groups: nothing that it yields loads a rail
    std::string in{};          ///< its place in the hierarchy
    std::string clock{};       ///< the group of Clock that clocks it, itself for one of those
};

struct RailResult {
    std::string name;
    std::string inside; ///< the rail whose static current already holds this one's, if any
    double volts = 0.0;
    double dynamicAmperes = 0.0;
    double dynamicWatts = 0.0;
    double staticAmperes = 0.0;
    double staticWatts = 0.0;
    double powerUpAmperes = 0.0;

    double amperes() const
    {
        return dynamicAmperes + staticAmperes;
    }
    double watts() const
    {
        return dynamicWatts + staticWatts;
    }
};

/// A value that the tool carried from one block into another, for the report.
struct Carried {
    /// A cell of a group or of the static power model, "pixel clock.FANOUT", or what else has a name: "device".
    struct End {
        std::shared_ptr<const std::string> name; ///< shared by all that is carried from there, or to it
        std::string_view cell{};                 ///< empty if it is none

        std::string text() const;
        bool operator==(const End& other) const
        {
            return *name == *other.name && cell == other.cell;
        }
    };

    End from;
    End to;
    Value value;

    bool operator==(const Carried&) const = default;
};

/// One of the model's own static totals: a subsystem.
struct Subsystem {
    std::string_view cell;
    double watts = 0.0;
};

/// A resource that the design uses, against what the device has.
struct Utilisation {
    std::string resource;
    double used = 0.0;
    double available = 0.0;
};

/// One process side of the device: typical or worst case.
struct Side {
    std::string process;
    double junction = 0.0;                 ///< NaN, as all that depends on it, if it runs away
    std::optional<OperatingPoint> thermal; ///< if the junction was found from ambient
    std::vector<RailResult> rails;
    std::vector<Subsystem> subsystems;
    double staticWatts = 0.0;
    double totalWatts = 0.0;
    std::optional<double> highestAmbient;
    std::optional<double> largestThetaJA;
    std::optional<SupplyTree> supplies;           ///< if the design has any
    std::vector<WarmingUp> startUp;               ///< empty unless asked for
    std::vector<std::pair<double, double>> curve; ///< total watts by junction temperature; empty unless drawn

    /// Null if nothing loads the rail.
    const RailResult* rail(std::string_view name) const;

    /// Whether the junction temperature means something: given directly, or found.
    bool settles() const
    {
        return !thermal || thermal->converged;
    }
};

struct CoolingResult {
    Cooling cooling;
    OperatingPoint point;
};

/// A limit against what the design comes to. NaN stands for what a runaway leaves unknown: it breaks every limit.
struct BudgetResult {
    std::string name;
    double limit = 0.0;
    double actual = 0.0; ///< on the design's process side
    std::string unit;
    std::optional<double> otherActual{}; ///< on the other process side, if there is one
    std::string process{};
    std::string otherProcess{};
    std::string judgedAt{}; ///< the process side that counts; empty: the worse of both

    /// Whether the limit is broken on a process side that counts.
    bool brokenAt(std::string_view side) const;
    bool broken() const
    {
        return brokenAt(process) || (otherActual && brokenAt(otherProcess));
    }
    /// "kept", "BROKEN", or what differs by process side: "kept at TYP, BROKEN at MAX".
    std::string verdict() const;
    /// How far the worst that counts is from the limit.
    std::string words() const;
};

/// Of the static power model, by cell.
using UsedCounts = std::map<std::string_view, int>;

struct Estimate {
    Design design;
    std::vector<GroupResult> groups;
    std::vector<Side> sides; ///< the design's process first; without a device one side, which has no static power
    std::vector<CoolingResult> cooling;
    std::vector<Utilisation> utilisation;
    std::vector<BudgetResult> budgets;
    std::vector<Carried> carried;
    std::optional<Period> period; ///< if the design has modes
    UsedCounts usedCounts;
    std::vector<std::string> warnings;
    double dynamicWatts = 0.0;
    double offchipWatts = 0.0;

    const Side& side() const
    {
        return sides.front();
    }
    bool budgetBroken() const;
    /// Null if there is none of that name.
    const BudgetResult* budget(std::string_view name) const;
};

} // namespace zelm::host

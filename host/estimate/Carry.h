#pragma once

#include "host/design/ResolvedDevice.h"
#include "host/estimate/Results.h"
#include "host/estimate/Running.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zelm::host {

// All that is carried into groups, and from one block to another.

/// The voltages that the design's rails give, else the device's nominal ones.
class RailVolts {
public:
    RailVolts(const Design& design, const ResolvedDevice* device);

    struct Known {
        float volts;
        Origin origin;
    };
    std::optional<Known> find(std::string_view rail) const;
    std::optional<double> volts(std::string_view rail) const;

private:
    std::vector<std::optional<Known>> m_known; // by the rail's place
};

/// A design's group at work: its own block, and those that it feeds.
struct StartedGroup {
    std::vector<Running> blocks;
    std::vector<Carried> carried;
    std::vector<std::string> warnings;
};

/// Makes and calculates a group of a design: sets its inputs, carries clock accounting into the blocks that it feeds,
/// the device's names and sites, bank voltages by I/O standard, and rail voltages everywhere.
StartedGroup start(const Design& design, const Group& group, const RailVolts& rails, const ResolvedDevice* device);

/// The groups of the design, by their place there, into which something else is carried once a group takes the place of
/// another of the same name: a clock's frequency into those that name it, their loads into the clock.
std::vector<std::size_t> carriedInto(const Design& design, const Group& before, const Group& after);

/// An end of what is carried.
Carried::End endOf(std::string_view name, std::string_view cell = {});

/// The used counts of the static power model, by cell, from what the groups use; the design's own settings win.
UsedCounts usedCounts(const RunningGroups& groups, const ResolvedDevice& device, const Design& design);

/// What the groups use of each resource that the catalogue counts.
std::vector<Utilisation> utilisation(const RunningGroups& groups, const ResolvedDevice& device);

} // namespace zelm::host

#pragma once

#include "host/design/ResolvedDevice.h"
#include "host/estimate/Results.h"
#include "host/estimate/Running.h"

#include <map>
#include <optional>
#include <string>
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
    std::optional<Known> find(const std::string& rail) const;
    std::optional<double> volts(const std::string& rail) const;

private:
    std::map<std::string, Known> m_known;
};

/// Makes and calculates the groups of a design: sets their inputs, carries clock accounting into the blocks that it
/// feeds, the device's names and sites, bank voltages by I/O standard, and rail voltages everywhere.
std::vector<Running> start(const Design& design, const RailVolts& rails, const ResolvedDevice* device,
                           std::vector<Carried>& carried, std::vector<std::string>& warnings);

/// The used counts of the static power model, by cell, from what the groups use; the design's own settings win.
std::map<std::string, int> usedCounts(const std::vector<Running>& groups, const ResolvedDevice& device,
                                      const Design& design, std::vector<Carried>& carried);

/// What the groups use of each resource that the catalogue counts.
std::vector<Utilisation> utilisation(const std::vector<Running>& groups, const ResolvedDevice& device);

} // namespace zelm::host

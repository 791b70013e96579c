#pragma once

#include "host/Catalogue.h"
#include "host/Running.h"

#include <map>
#include <string>
#include <vector>

namespace zelm::host {

/// The used counts of the static power model, by cell, from what the groups use; the design's own settings win.
std::map<std::string, int> usedCounts(const std::vector<Running>& groups, const ResolvedDevice& device,
                                      const Design& design, std::vector<Carried>& carried);

/// What the groups use of each resource that the catalogue counts.
std::vector<Utilisation> utilisation(const std::vector<Running>& groups, const ResolvedDevice& device);

} // namespace zelm::host

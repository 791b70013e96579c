#pragma once

#include "host/design/Design.h"
#include "host/design/Fields.h"

#include <map>
#include <string>
#include <utility>
#include <vector>

namespace zelm::host {

// The sections of a design, each read on its own: who changes one need not read the others again. What doesn't stand
// in one section alone, two groups of one name or the clocks that groups name, is held against all in readDesign.

/// The parameters of a design, computed once for all its sections.
Reading startReading(const Json& root, const JsonSource& source);

Device readDevice(const Json& device, const Reading& reading);
Environment readEnvironment(const Json& environment, const Reading& reading);
std::map<std::string, float> readRails(const Json& rails, Reading& reading);
std::map<std::string, double> readRegulators(const Json& regulators, const Reading& reading);
Budgets readBudgets(const Json& budgets, const Reading& reading);
std::vector<std::pair<std::string, Value>> readStaticInputs(const Json& inputs, Reading& reading);
Group readGroup(const Json& group, std::size_t index, Reading& reading);

} // namespace zelm::host

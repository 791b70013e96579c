#pragma once

#include "host/design/Design.h"
#include "host/design/Fields.h"
#include "host/design/Limits.h"

#include <map>
#include <string>
#include <utility>
#include <vector>

namespace zelm::host {

// The sections of a design, each read on its own: who changes one need not read the others again. What doesn't stand
// in one section alone, two groups of one name or the clocks that groups name, is held against all in readDesign.

// The dimensions of a design's own fields, and what they may be.
inline constexpr Range kDegrees{kColdest, kHottest, "C", "degrees Celsius"};
inline constexpr Range kDegreesPerWatt{0.0, kMostThetaJA, "C/W", "degrees per watt"};
inline constexpr Range kVolts{0.0, kMostVolts, "V"};
inline constexpr Range kAmperes{0.0, kMostAmperes, "A"};
inline constexpr Range kWatts{0.0, kMostAmperes, "W"};
inline constexpr Range kSeconds{0.0, kMostSeconds, "s"};
inline constexpr Range kWattHours{0.0, kMostWattHours, "Wh"};
inline constexpr Range kShare{0.0, 1.0, ""};

/// The parameters of a design, computed once for all its sections.
Reading startReading(const Json& root, const JsonSource& source);

Device readDevice(const Json& device, const Reading& reading);
std::vector<ThermalStage> readStages(const Json& thermal, const Reading& reading);
/// The stages stand in for a thetaJA.
Environment readEnvironment(const Json& environment, const std::vector<ThermalStage>& stages, const Reading& reading);
std::map<std::string, float> readRails(const Json& rails, Reading& reading);
std::map<std::string, double> readRegulators(const Json& regulators, const Reading& reading);
/// Regulators are supplies of one rail without loss, at the board's input: they join the tree, and no supply may feed
/// such a rail. An Error tells of supplies in a circle, too.
std::vector<Supply> readSupplies(const Json& supplies, const std::map<std::string, double>& regulators,
                                 const Reading& reading);
/// Rails, or lists of rails that power up together.
std::vector<std::vector<std::string>> readSequence(const Json& sequence, const std::vector<Supply>& supplies,
                                                   const Reading& reading);
/// Its energy in Wh.
double readBattery(const Json& battery, const Reading& reading);
/// Root is the whole design. A place that a mode sets wrongly is told with the line of the setting.
std::vector<Mode> readModes(const Json& modes, const Json& root, const Reading& reading);
Budgets readBudgets(const Json& budgets, const Reading& reading);
std::vector<std::pair<std::string, Value>> readStaticInputs(const Json& inputs, Reading& reading);
Group readGroup(const Json& group, std::size_t index, Reading& reading);

} // namespace zelm::host

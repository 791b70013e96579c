#pragma once

#include "host/base/JsonFwd.h"

#include <memory>
#include <string>
#include <vector>

namespace zelm::host {

class Place;
struct Design;
struct JsonSource;

/// What a device does for a while, over and over: the design with some of its places set.
struct Mode {
    std::string name;
    double seconds = 0.0;
    std::shared_ptr<const Design> design; ///< as it is then; it has no modes itself
};

/// A stage of a Foster network: the rise over it follows r x power with the time constant tau.
struct ThermalStage {
    double r = 0.0;   ///< degrees per watt
    double tau = 0.0; ///< s
};

/// Reads "modes"; root is the whole design. A place that a mode sets wrongly is told with the line of the setting.
std::vector<Mode> readModes(const Json& value, const Place& where, const Json& root, const JsonSource& source);

/// Reads "thermal".
std::vector<ThermalStage> readStages(const Json& value, const Place& where);

/// Reads "battery": its energy in Wh.
double readBattery(const Json& value, const Place& where);

} // namespace zelm::host

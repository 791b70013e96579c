#pragma once

#include <memory>
#include <string>
#include <vector>

namespace zelm::host {

struct Design;

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

} // namespace zelm::host

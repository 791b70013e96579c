#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace zelm::host {

/// A supply under load. NaN stands for what a runaway leaves unknown.
struct SupplyResult {
    std::string name;
    std::string from;
    double volts = 0.0;
    double loadAmperes = 0.0;
    double outputWatts = 0.0;
    double efficiency = 1.0; ///< at this load
    double inputWatts = 0.0;
    std::optional<double> maxAmperes;
    double powerUpAmperes = 0.0;                       ///< the most at any step of powering up; 0 if none is known
    std::vector<std::string> powerUpRails{};           ///< those that power up at that step
    std::vector<std::pair<std::string, double>> rails; ///< what each takes, W

    double lossWatts() const
    {
        return inputWatts - outputWatts;
    }
};

/// All supplies of a board on one process side.
struct SupplyTree {
    std::vector<SupplyResult> supplies;
    double inputWatts = 0.0;        ///< of the board: what all supplies without one above them take
    std::vector<std::string> unfed; ///< rails that draw current and that nobody feeds
    double unfedWatts = 0.0;        ///< what these take, in no supply

    const SupplyResult* find(const std::string& name) const;
};

} // namespace zelm::host

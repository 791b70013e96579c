#pragma once

#include "host/estimate/SupplyResults.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace zelm::host {

/// A mode on one process side, in the period that repeats for ever.
struct ModeSide {
    double staticWatts = 0.0; ///< in time's average, as all that isn't called highest, lowest or peak
    double watts = 0.0;
    double peakWatts = 0.0;
    double inputWatts = 0.0; ///< of the board; 0 without supplies
    double joules = 0.0;     ///< of the chip
    double lowestJunction = 0.0;
    double highestJunction = 0.0;
};

struct ModeResult {
    std::string name;
    double seconds = 0.0;
    double dynamicWatts = 0.0;
    std::vector<double> groupWatts; ///< in the order of the estimate's groups
    std::vector<ModeSide> sides;
};

/// A moment of the period.
struct Moment {
    double seconds = 0.0;
    std::size_t mode = 0;
    double junction = 0.0;
    double watts = 0.0;
    double inputWatts = 0.0;
};

/// What a rail draws over the period.
struct RailPeriod {
    std::string rail;
    double watts = 0.0; ///< average
    double peakWatts = 0.0;
    double peakAmperes = 0.0;
    std::string peakMode;
};

/// What a supply delivers over the period.
struct SupplyPeriod {
    std::string name;
    std::optional<double> maxAmperes;
    double inputWatts = 0.0; ///< average
    double peakInputWatts = 0.0;
    double peakAmperes = 0.0;
    std::string peakMode;
    double powerUpAmperes = 0.0; ///< the most, whatever the mode was before
};

/// A stretch of the start-up, to its end.
struct WarmingUp {
    double seconds = 0.0;
    double lowestJunction = 0.0;
    double highestJunction = 0.0;
};

/// One process side over the period. NaN stands for what a runaway leaves unknown.
struct PeriodSide {
    std::string process;
    bool settles = true;
    std::string words;            ///< of the temperature: why there is none, or how it was found
    double settledJunction = 0.0; ///< at the average power
    double watts = 0.0;           ///< average
    double peakWatts = 0.0;
    std::string peakMode;
    double joules = 0.0;     ///< of the chip, in a period
    double inputWatts = 0.0; ///< of the board, average
    double peakInputWatts = 0.0;
    Moment lowest; ///< when the junction is coldest
    Moment highest;
    std::optional<double> batteryHours; ///< at the average of the board's input, or of the chip without supplies
    std::vector<RailPeriod> rails;
    std::vector<SupplyPeriod> supplies;
    std::vector<Moment> moments; ///< power is linear between those of a mode
};

/// The modes of a design, over and over.
struct Period {
    double seconds = 0.0;
    std::vector<ModeResult> modes;
    std::vector<PeriodSide> sides; ///< as the estimate's
};

} // namespace zelm::host

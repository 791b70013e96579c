#pragma once

#include <cstddef>

namespace zelm::host {

// What a design's own fields may be: beyond lies a mistake in the unit or the decimal point.
inline constexpr double kColdest = -273.0; // degrees Celsius
inline constexpr double kHottest = 1000.0;
inline constexpr double kMostThetaJA = 1000.0; // degrees per watt
inline constexpr double kMostVolts = 100.0;
inline constexpr std::size_t kMostSupplies = 200;
inline constexpr std::size_t kMostModes = 100;
inline constexpr std::size_t kMostModeGroups = 100000; // each mode has all groups in memory
inline constexpr std::size_t kMostStages = 16;
inline constexpr double kMostSeconds = 1e9;
inline constexpr double kMostWattHours = 1e9;
inline constexpr double kMostAmperes = 1e5; // watts too

} // namespace zelm::host

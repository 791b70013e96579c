#pragma once

#include <string>

namespace zelm::host {

/// Where a device settles, or that it doesn't.
struct OperatingPoint {
    bool converged = false;
    double junction = 0.0; ///< degrees Celsius; the last one tried if there is no equilibrium
    double power = 0.0;    ///< W at that junction
    double loopGain = 0.0; ///< thetaJA x dP/dT there: how much of a step comes back; below 1 if it settles
    std::string words;     ///< what a person should know: the proof, or why there is no equilibrium
};

} // namespace zelm::host

#pragma once

namespace zelm {

/// The power of charging a capacitance at a frequency, in double precision: uW for a product in fF MHz.
inline double capFreqPower(float volts, float capFreq)
{
    const double v = volts;
    return v * v * static_cast<double>(capFreq) * 0.001;
}

} // namespace zelm

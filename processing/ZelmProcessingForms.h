#pragma once

#include "framework/ZelmArithmetic.h"

#include <array>
#include <cmath>
#include <cstddef>

/// The formulas that the processing system and the platform management share. Powers come in the tables' unit,
/// frequencies in MHz, loads as fractions; steps are in single precision unless the type says double.
namespace zelm {

/// A cell's get or calculate function, as a family's row names it.
template <class Model, class Value = float>
using Pull = Value (Model::*)(typename Model::Params&, const typename Model::Data&) const;

/// A cell that adds up others, or copies one.
template <class Model>
struct SumRow {
    typename Model::Params::FloatEnum cell;
    std::array<Pull<Model>, 13> parts; // in the order of addition; null behind the last

    float add(const Model& model, typename Model::Params& params, const typename Model::Data& data) const
    {
        float sum = (model.*parts[0])(params, data);
        for (std::size_t i = 1; i < parts.size() && parts[i]; ++i)
            sum += (model.*parts[i])(params, data);
        return sum;
    }
};

/// What a supply makes of the power characterised at another; 0 unless that one is positive.
inline float voltageScaling(float voltage, float characterised)
{
    const double factor = voltageFactor(voltage, characterised);
    return characterised > 0.0f ? static_cast<float>(factor) : 0.0f;
}

/// The clock tree, which always runs, and the logic behind it.
constexpr float clockedPower(float clock, float dynamic, float frequency, float load)
{
    return clock * frequency + dynamic * frequency * load;
}

/// The straight line through a PLL's powers at 2160 and 4320 MHz. It has no ends: the workbook extrapolates.
constexpr float pllPower(float at2160, float at4320, float frequency)
{
    return at2160 + (frequency - 2160.0f) * ((at4320 - at2160) / 2160.0f);
}

/// A PLL's core supply counts against a fixed 0.85 V, whatever voltage the tables were characterised at.
inline double pllCorePower(float power, float voltage)
{
    return power * std::pow(voltage / 0.85, 2.3);
}

/// What a load of so many pF makes of a transmitter's power at 5 pF.
constexpr float loadFactor(float scale, float load)
{
    return scale * (load / 5.0f - 1.0f) + 1.0f;
}

/// Pads on an internal rail: receive and transmit in the table's power per MHz.
constexpr float padPower(float inputs, float outputs, float bidis, float receive, float transmit, float frequency)
{
    return inputs * receive * frequency + outputs * transmit * frequency + (receive + transmit) * frequency * bidis;
}

} // namespace zelm

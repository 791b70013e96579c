#pragma once

#include "framework/ZelmSheet.h"

#include <array>
#include <cmath>
#include <cstddef>

/// The formulas that the processing system and the platform management share. Powers come in the tables' unit,
/// frequencies in MHz, loads as fractions; steps are in single precision unless the type says double.
namespace zelm {

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

/// A cell that adds up others, or copies one.
template <class Params>
struct SumRow {
    typename Params::FloatEnum sum;
    std::array<typename Params::FloatEnum, 13> parts; // in the order of addition; behind the last the marker, no cell
};

/// The cell of what a supply makes of the characterised power.
template <class Params>
struct SupplyRow {
    typename Params::FloatEnum scaling;
    typename Params::FloatEnum voltage;
};

} // namespace zelm

/// The formulas over cells that the two have in common.
template <class Model>
struct ZelmProcessingSheet : zelm::Sheet<Model> {
    using Base = ZelmProcessingSheet;
    using zelm::Sheet<Model>::Sheet;
    using zelm::Sheet<Model>::self;
    using zelm::Sheet<Model>::value;
    using typename zelm::Sheet<Model>::Params;

    float sum(const zelm::SumRow<Params>& row) const
    {
        float total = value(row.parts[0]);
        for (std::size_t i = 1; i < row.parts.size() && row.parts[i] != Params::FirstUIFloat; ++i)
            total += value(row.parts[i]);
        return total;
    }

    float scaling(const zelm::SupplyRow<Params>& supply) const
    {
        const float voltage = value(supply.voltage);
        const float characterised = self().findSimConditions("PSIM_VOLTAGE");
        return zelm::voltageScaling(voltage, characterised);
    }
};

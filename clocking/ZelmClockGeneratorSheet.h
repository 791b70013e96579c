#pragma once

#include "framework/ZelmSheet.h"

#include <initializer_list>

/// What the clock generators have in common: an input divided by D feeds a VCO multiplied by M, and divided outputs
/// come off the VCO. A generator without a cell or an input of a name just doesn't use the formula. A model's rows of
/// outputs name their cells: divide, outputClock and those of the model's own metrics.
template <class Model>
struct ZelmClockGeneratorSheet : zelm::Sheet<Model> {
    using Base = ZelmClockGeneratorSheet;
    using zelm::Sheet<Model>::Sheet;
    using zelm::Sheet<Model>::self;
    using zelm::Sheet<Model>::value;
    using typename zelm::Sheet<Model>::Key;

    float computePfdClock() const
    {
        const float input = self().InputFrequency();
        const int divide = self().DCounter();
        return zelm::ratioOrZero(input, static_cast<float>(divide));
    }

    float computeClockfbout() const
    {
        return computePfdClock();
    }

    float computeFvco() const
    {
        const float input = self().InputFrequency();
        const int divide = self().DCounter();
        const int multiply = self().MCounter();
        return zelm::ratioOrZero(input, static_cast<float>(divide)) * static_cast<float>(multiply);
    }

    /// A divide of 1 is an output that isn't used.
    template <class Output>
    float outputClock(const Output& output) const
    {
        const float vco = self().Fvco();
        const int divide = value(output.divide);
        return divide > 1 ? vco / static_cast<float>(divide) : 0.0f;
    }

    /// Phase detector and input counters; the counters see both edges of the input.
    float inputCurrent() const
    {
        const float pfdClock = self().PfdClock();
        const float detector = row("IVCCINT_PFD");
        const float input = self().InputFrequency();
        const float counters = row("IVCCINT_INPUT_COUNTERS");
        return pfdClock * detector + 2.0f * input * counters;
    }

    /// The calibration offset is given for the power, so it is undone by the factor that the power takes.
    float lessCalibrationOffset(float current) const
    {
        const float offset = row("FUDGE_FACTOR_AUX");
        const float factor = row("FUDGE_FACTOR");
        return current - zelm::ratioOrZero(offset, factor);
    }

    float powerAt(float volts, float current) const
    {
        return row("FUDGE_FACTOR") * current * volts;
    }

    /// The current grows with the voltage, so the voltage enters twice.
    float powerAt(float volts, float simVolts, float current) const
    {
        return powerAt(volts, current) * zelm::ratioOrZero(volts, simVolts);
    }

    float row(const Key& key) const
    {
        if constexpr (requires { self().findCommonData(key); })
            return self().findCommonData(key);
        else
            return self().findCommonData(key, "");
    }

    float sumOfRows(std::initializer_list<Key> keys) const
    {
        float sum = row(*keys.begin());
        for (const Key* key = keys.begin() + 1; key != keys.end(); ++key)
            sum += row(*key);
        return sum;
    }
};

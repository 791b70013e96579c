#pragma once

#include "framework/ZelmModelBlock.h"

#include <initializer_list>
#include <string_view>

/// What the clock generators have in common: an input divided by D feeds a VCO multiplied by M, and divided outputs
/// come off the VCO. A block takes a formula by naming it in its cell rows; a generator without a cell or an input of
/// that name just doesn't use the formula.
/// A block's header declares its model class exported before it instantiates ZelmModelBlock for it: hosts need that
/// base's type information to see through this class.
template <class Derived, class ParamsT, class DataT>
class ZELM_EXPORT ZelmClockGenerator : public ZelmModelBlock<Derived, ParamsT, DataT> {
protected:
    using Cell = typename ParamsT::FloatEnum;
    using ZelmModelBlock<Derived, ParamsT, DataT>::once;

    ZelmClockGenerator() = default;
    ~ZelmClockGenerator() = default;

    /// A divided output. Its cells stand number places behind those of output 0.
    struct Output {
        int (Derived::*divide)(ParamsT&, const DataT&) const;
        int number;

        float& cell(ParamsT& params, Cell ofOutput0) const
        {
            return params[zelm::cellBehind(ofOutput0, number)];
        }
    };

    float dividedInput(Cell cell, ParamsT& params, const DataT& data) const
    {
        return once(params[cell], [&] {
            const float input = self().getInputFrequency(params, data);
            const int divide = self().getDCounter(params, data);
            return zelm::ratioOrZero(input, static_cast<float>(divide));
        });
    }

    float vcoClock(Cell cell, ParamsT& params, const DataT& data) const
    {
        return once(params[cell], [&] {
            const float input = self().getInputFrequency(params, data);
            const int divide = self().getDCounter(params, data);
            const int multiply = self().getMCounter(params, data);
            return zelm::ratioOrZero(input, static_cast<float>(divide)) * static_cast<float>(multiply);
        });
    }

    /// A divide of 1 is an output that isn't used.
    float outputClock(const Output& output, ParamsT& params, const DataT& data) const
    {
        return once(output.cell(params, ParamsT::CLOCKOUT0), [&] {
            const float vco = self().calculateFvco(params, data);
            const int divide = (self().*output.divide)(params, data);
            return divide > 1 ? vco / static_cast<float>(divide) : 0.0f;
        });
    }

    /// Phase detector and input counters; the counters see both edges of the input.
    float inputCurrent(Cell cell, ParamsT& params, const DataT& data) const
    {
        return once(params[cell], [&] {
            const float pfdClock = self().calculatePfdClock(params, data);
            const float detector = row(data, "IVCCINT_PFD");
            const float input = self().getInputFrequency(params, data);
            const float counters = row(data, "IVCCINT_INPUT_COUNTERS");
            return pfdClock * detector + 2.0f * input * counters;
        });
    }

    /// The calibration offset is given for the power, so it is undone by the factor that the power takes.
    static float lessCalibrationOffset(float current, const DataT& data)
    {
        const float offset = row(data, "FUDGE_FACTOR_AUX");
        const float factor = row(data, "FUDGE_FACTOR");
        return current - zelm::ratioOrZero(offset, factor);
    }

    static float powerAt(float volts, float current, const DataT& data)
    {
        return row(data, "FUDGE_FACTOR") * current * volts;
    }

    /// The current grows with the voltage, so the voltage enters twice.
    static float powerAt(float volts, float simVolts, float current, const DataT& data)
    {
        return powerAt(volts, current, data) * zelm::ratioOrZero(volts, simVolts);
    }

    static float row(const DataT& data, std::string_view key)
    {
        if constexpr (requires { data.findCommonData(key); })
            return data.findCommonData(key);
        else
            return data.findCommonData(key, "");
    }

    static float sumOfRows(const DataT& data, std::initializer_list<std::string_view> keys)
    {
        float sum = row(data, *keys.begin());
        for (const std::string_view* key = keys.begin() + 1; key != keys.end(); ++key)
            sum += row(data, *key);
        return sum;
    }

private:
    const Derived& self() const
    {
        return static_cast<const Derived&>(*this);
    }
};

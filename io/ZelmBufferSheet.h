#pragma once

#include "framework/ZelmSheet.h"

#include <optional>
#include <string_view>

namespace zelm::io {

constexpr float square(float value)
{
    return value * value;
}

/// Current of a driver that moves the pad, the package and the board's load, from that at the characterised load.
constexpr float loadedCurrent(float padCapacitance, float load, float packageCapacitance, float current,
                              float characterisedLoad)
{
    return ratioOrZero((padCapacitance + load + packageCapacitance) * current, characterisedLoad + padCapacitance);
}

/// Low level at a receiver that is terminated by t, driven through r: swing is the share of the supply between the
/// termination's own level and the driver's.
constexpr float dividedLow(float v, float r, float t, float swing)
{
    return r > 0.0f ? v * ratioOrZero(r, r + t) * swing : 0.0f;
}

/// Heat in a split termination of 2t to the supply and 2t to ground; scale is 1000 for each line.
constexpr float splitHeat(float v, float vol, float voh, float pw, float t, float scale)
{
    const float low = square(vol) + square(v - vol);
    const float high = square(v - voh) + square(voh);
    return t > 0.0f ? (low * (1.0f - pw) + high * pw) * scale / (2.0f * t) : 0.0f;
}

/// The row of that name; a name that is on no list doesn't compile.
template <class Standards>
consteval const auto& row(const Standards& standards, std::string_view name)
{
    for (const auto& standard : standards) {
        if (standard.name == name)
            return standard;
    }
    throw "no such standard";
}

/// A power cell: what it takes from the selected standard's cells, and what it is multiplied by; nothing counts as 1.
template <class Standard, class Cell>
struct SelectedInput {
    Cell inputPower;
    typename Standard::Metric metric;
    std::optional<Cell> multiplier{};
};

template <class Standard, class Cell>
struct SelectedOutput {
    Cell outputPower;
    typename Standard::Metric metric;
    std::optional<Cell> multiplier{};
};

} // namespace zelm::io

/// What the buffers of high-performance and high-density pins have in common. Rows of standards tell their cells by
/// cellOf(metric). The model's own sheet has them in kInputs and kOutputs, reads their tables by table(standard, key),
/// and tells by supply(standard) what levels refer to.
template <class Model>
struct ZelmBufferSheet : zelm::Sheet<Model> {
    using Base = ZelmBufferSheet;
    using zelm::Sheet<Model>::Sheet;
    using zelm::Sheet<Model>::self;
    using zelm::Sheet<Model>::value;
    using zelm::Sheet<Model>::valueInLoop;
    using typename zelm::Sheet<Model>::FloatCell;
    using typename zelm::Sheet<Model>::Key;

    // ---- A standard's cells that formulas of the same standard pull ----

    template <class Standard>
    float low(const Standard& standard) const
    {
        return value(standard.cellOf(standard.vol));
    }
    template <class Standard>
    float high(const Standard& standard) const
    {
        return value(standard.cellOf(standard.voh));
    }
    template <class Standard>
    float directCurrent(const Standard& standard) const
    {
        return value(standard.cellOf(standard.dcVccoCurrent));
    }
    template <class Standard>
    float onchip(const Standard& standard) const
    {
        return value(standard.cellOf(standard.onchipPower));
    }

    // ---- Formulas that rows choose ----

    template <class Standard>
    float zero(const Standard&) const
    {
        return 0.0f;
    }

    template <class Standard>
    float tabulatedCurrent(const Standard& standard) const
    {
        return self().table(standard, "VCCO_DC");
    }

    template <class Standard>
    float complementHigh(const Standard& standard) const
    {
        const float v = self().supply(standard);
        const float vol = low(standard);
        return v - vol;
    }

    // Negative where the heat on chip has no direct current beside it (LVDS, LVSTL, POD): as in the workbook.
    template <class Standard>
    float remainderOffchip(const Standard& standard) const
    {
        const float current = directCurrent(standard);
        const float v = self().supply(standard);
        const float heat = onchip(standard);
        return current * v - heat;
    }

    // ---- Power by the selected standards ----

    // The nested IF over a list of standards: all are evaluated, the one of exactly that name is taken, 0 if none is.
    template <class Standards, class Metric>
    float selected(const Standards& standards, const Key& name, Metric metric) const
    {
        float found = 0.0f;
        for (const auto& standard : standards) {
            const float current = valueInLoop(standard.cellOf(metric));
            if (standard.name.hash() == name.hash() && standard.name == name.text())
                found = current;
        }
        return found;
    }

    template <class Standard>
    float inputPower(const zelm::io::SelectedInput<Standard, FloatCell>& power) const
    {
        const float current = selected(self().kInputs, self().InputIoStandard(), power.metric);
        const float inputs = self().NumInputs();
        const float multiplier = power.multiplier ? value(*power.multiplier) : 1.0f;
        return current * inputs * multiplier;
    }

    template <class Standard>
    float outputPower(const zelm::io::SelectedOutput<Standard, FloatCell>& power) const
    {
        const float current = selected(self().kOutputs, self().OutputIoStandard(), power.metric);
        const float multiplier = power.multiplier ? value(*power.multiplier) : 1.0f;
        const float outputs = self().NumOutputs();
        return current * multiplier * outputs;
    }

    // ---- Cells of the group ----

    /// Toggles per microsecond, half of them rising. Clocks and asynchronous signals toggle at the full clock whatever
    /// the toggle rate; a rate of unknown name counts as single.
    float computeIobFreq() const
    {
        const Key& rate = self().DataRate();
        const float clockFreq = self().ClockFreq();
        const float toggleRate = self().ToggleRate();
        if (rate == "Clock" || rate == "Async")
            return clockFreq;
        return clockFreq * toggleRate * (rate == "DDR" ? 1.0f : 0.5f);
    }

    /// 1 if the pins receive, else 0; a direction of unknown name receives and drives.
    float computeNumInputs() const
    {
        const Key& direction = self().IoDirection();
        return direction == "OUTPUT" || direction == "BIDI_OUTPUT" ? 0.0f : 1.0f;
    }

    /// 1 if the pins drive, else 0.
    float computeNumOutputs() const
    {
        const Key& direction = self().IoDirection();
        return direction == "INPUT" || direction == "BIDI_INPUT" ? 0.0f : 1.0f;
    }

    float computeVccauxPower() const
    {
        const float inputDc = self().IbufDcVccauxPower();
        const float inputAc = self().IbufAcVccauxPower();
        const float outputDc = self().ObufDcVccauxPower();
        const float outputAc = self().ObufAcVccauxPower();
        return total(inputDc + inputAc, outputDc + outputAc);
    }

    float computeOffchipPower() const
    {
        const float input = self().IbufOffchipPower();
        const float output = self().ObufOffchipPower();
        return total(input, output);
    }

    /// Power on the core supply of the buffers.
    float corePower() const
    {
        const float inputDc = self().IbufDcVccioPower();
        const float inputAc = self().IbufAcVccioPower();
        const float outputDc = self().ObufDcVccioPower();
        const float outputAc = self().ObufAcVccioPower();
        return total(inputDc + inputAc, outputDc + outputAc);
    }

    /// The inputs' and the outputs' part of a total, each counted if there are such pins.
    float total(float inputPart, float outputPart) const
    {
        const float inputs = self().NumInputs();
        const float outputs = self().NumOutputs();
        return inputPart * inputs + outputPart * outputs;
    }
};

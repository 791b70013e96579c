#pragma once

#include "framework/ZelmArithmetic.h"

#include <string_view>

/// What the buffers of high-performance and high-density pins have in common. A model's functions here take the model,
/// its parameter block and its data block; the others take plain values.
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

/// One standard in one run of calculate: what the formulas of both sides read, and the formulas that sides or kinds
/// share. Receivers and drivers derive from it and state what differs. v is the supply that levels refer to, r the
/// resistance on the board.
template <class Model, class Standard>
struct Buffer {
    const Model& model;
    const Standard& standard;
    typename Model::Params& params;
    const typename Model::Data& data;

    float table(std::string_view key) const
    {
        return standard.table(data, key);
    }
    float supply() const
    {
        return model.supplyOf(standard, params, data);
    }
    float boardResistance() const
    {
        return model.getOffchipTermination(params, data);
    }
    float low() const
    {
        return model.vol(standard, params, data);
    }
    float high() const
    {
        return model.voh(standard, params, data);
    }
    float directCurrent() const
    {
        return model.dcVccoCurrent(standard, params, data);
    }
    float onchip() const
    {
        return model.onchipPower(standard, params, data);
    }

    float zero() const
    {
        return 0.0f;
    }

    float auxiliaryToggling() const
    {
        return table("VCCAUX_AC");
    }

    float coreToggling() const
    {
        return table("VCCINT_IO_AC");
    }

    float auxiliaryDirect() const
    {
        return table("VCCAUX_DC");
    }

    float coreDirect() const
    {
        return table("VCCINT_IO_DC");
    }

    float tabulatedCurrent() const
    {
        return table("VCCO_DC");
    }

    float complementHigh() const
    {
        const float v = supply();
        const float vol = low();
        return v - vol;
    }

    // Negative where the heat on chip has no direct current beside it (LVDS, LVSTL, POD): as in the workbook.
    float remainderOffchip() const
    {
        const float current = directCurrent();
        const float v = supply();
        const float heat = onchip();
        return current * v - heat;
    }
};

/// The nested IF over a list of standards: all are evaluated, the one of exactly that name is taken, 0 if none is.
template <class Standards, class Metric>
float select(const Standards& standards, std::string_view name, Metric metric)
{
    float selected = 0.0f;
    for (const auto& standard : standards) {
        const float value = metric(standard);
        if (standard.name == name)
            selected = value;
    }
    return selected;
}

/// What a power cell takes from the selected standard's cells, and what it is multiplied by; no multiplier counts as 1.
template <class Model, class Standard>
struct SelectedPower {
    using Params = typename Model::Params;
    using Data = typename Model::Data;

    typename Params::FloatEnum cell;
    float (Model::*metric)(const Standard&, Params&, const Data&) const;
    float (Model::*multiplier)(Params&, const Data&) const = nullptr;
};

template <class Model, class Standard, class Standards>
float inputPower(const Model& model, const SelectedPower<Model, Standard>& power, const Standards& standards,
                 typename Model::Params& params, const typename Model::Data& data)
{
    const std::string_view wanted = model.viewInputIoStandard(params, data);
    const float selected = select(
        standards, wanted, [&](const Standard& standard) { return (model.*power.metric)(standard, params, data); });
    const float inputs = model.calculateNumInputs(params, data);
    const float multiplier = power.multiplier ? (model.*power.multiplier)(params, data) : 1.0f;
    return selected * inputs * multiplier;
}

template <class Model, class Standard, class Standards>
float outputPower(const Model& model, const SelectedPower<Model, Standard>& power, const Standards& standards,
                  typename Model::Params& params, const typename Model::Data& data)
{
    const std::string_view wanted = model.viewOutputIoStandard(params, data);
    const float selected = select(
        standards, wanted, [&](const Standard& standard) { return (model.*power.metric)(standard, params, data); });
    const float multiplier = power.multiplier ? (model.*power.multiplier)(params, data) : 1.0f;
    const float outputs = model.calculateNumOutputs(params, data);
    return selected * multiplier * outputs;
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

/// Toggles per microsecond, half of them rising. Clocks and asynchronous signals toggle at the full clock whatever the
/// toggle rate; a rate of unknown name counts as single.
template <class Model>
float iobFreq(const Model& model, typename Model::Params& params, const typename Model::Data& data)
{
    const std::string_view rate = model.viewDataRate(params, data);
    const float clockFreq = model.getClockFreq(params, data);
    const float toggleRate = model.getToggleRate(params, data);
    if (rate == "Clock" || rate == "Async")
        return clockFreq;
    return clockFreq * toggleRate * (rate == "DDR" ? 1.0f : 0.5f);
}

/// 1 if the pins receive, else 0; a direction of unknown name receives and drives.
template <class Model>
float numInputs(const Model& model, typename Model::Params& params, const typename Model::Data& data)
{
    const std::string_view direction = model.viewIoDirection(params, data);
    return direction == "OUTPUT" || direction == "BIDI_OUTPUT" ? 0.0f : 1.0f;
}

/// 1 if the pins drive, else 0.
template <class Model>
float numOutputs(const Model& model, typename Model::Params& params, const typename Model::Data& data)
{
    const std::string_view direction = model.viewIoDirection(params, data);
    return direction == "INPUT" || direction == "BIDI_INPUT" ? 0.0f : 1.0f;
}

/// The inputs' and the outputs' part of a total, each counted if there are such pins.
template <class Model>
float total(const Model& model, typename Model::Params& params, const typename Model::Data& data, float inputPart,
            float outputPart)
{
    const float inputs = model.calculateNumInputs(params, data);
    const float outputs = model.calculateNumOutputs(params, data);
    return inputPart * inputs + outputPart * outputs;
}

/// Power on the core supply of the buffers.
template <class Model>
float coreTotal(const Model& model, typename Model::Params& params, const typename Model::Data& data)
{
    const float inputDc = model.calculateIbufDcVccioPower(params, data);
    const float inputAc = model.calculateIbufAcVccioPower(params, data);
    const float outputDc = model.calculateObufDcVccioPower(params, data);
    const float outputAc = model.calculateObufAcVccioPower(params, data);
    return total(model, params, data, inputDc + inputAc, outputDc + outputAc);
}

/// Power on the auxiliary supply.
template <class Model>
float auxiliaryTotal(const Model& model, typename Model::Params& params, const typename Model::Data& data)
{
    const float inputDc = model.calculateIbufDcVccauxPower(params, data);
    const float inputAc = model.calculateIbufAcVccauxPower(params, data);
    const float outputDc = model.calculateObufDcVccauxPower(params, data);
    const float outputAc = model.calculateObufAcVccauxPower(params, data);
    return total(model, params, data, inputDc + inputAc, outputDc + outputAc);
}

/// Power that the pins burn on the board.
template <class Model>
float offchipTotal(const Model& model, typename Model::Params& params, const typename Model::Data& data)
{
    const float input = model.calculateIbufOffchipPower(params, data);
    const float output = model.calculateObufOffchipPower(params, data);
    return total(model, params, data, input, output);
}

} // namespace zelm::io

#pragma once

// The bodies of ZelmDspModel and the pieces of a model's Slice, for the source files of the models.

#include "dsp/ZelmDspKey.h"
#include "dsp/ZelmDspModel.h"
#include "framework/ZelmModelBlockImpl.h"

#include <array>
#include <cmath>
#include <cstddef>

namespace zelm {

template <class T>
using PerDspComponent = std::array<T, static_cast<std::size_t>(DspComponent::numComponents)>;

constexpr std::size_t indexOf(DspComponent component)
{
    return static_cast<std::size_t>(component);
}

/// The key of a component in the tables.
constexpr std::string_view keyOf(DspComponent component)
{
    constexpr PerDspComponent<std::string_view> keys{
        "AB_DATA",      "PREADD_DATA",  "C_DATA",     "ALUREG",   "ALUMUX",        "ALUADD",        "PREADD", "MULT",
        "M_DATA",       "PATDET",       "FP_EXP",     "FP_ADD",   "FP_NORM",       "OUTPUT",        "OPTINV", "COMPLEX",
        "COMPLEX_STG0", "COMPLEX_STG1", "CASC_DELAY", "WIDE_XOR", "COMPONENT_SUM", "TOTAL_MEASURED"};
    return keys[indexOf(component)];
}

/// An operational mode: its key, and the group of modes that share their toggle formulas.
struct DspMode {
    std::string_view key;
    int group;
};

/// A component's part in the aggregated toggle rate.
struct DspWeight {
    DspComponent component;
    float weight;
};

/// The components that every slice has stand first in DspComponent, in the order of every sum.
inline constexpr std::size_t numPlainDspComponents = indexOf(DspComponent::optinv) + 1;

/// The plain components, then the given ones.
template <class... Rest>
constexpr auto dspComponents(Rest... rest)
{
    std::array<DspComponent, numPlainDspComponents + sizeof...(rest)> components{};
    std::size_t i = 0;
    for (; i < numPlainDspComponents; ++i)
        components[i] = static_cast<DspComponent>(i);
    ((components[i++] = rest), ...);
    return components;
}

/// The plain components at full weight, then the given parts.
template <std::size_t size>
constexpr auto dspAggregate(const DspWeight (&rest)[size])
{
    std::array<DspWeight, numPlainDspComponents + size> parts{};
    for (std::size_t i = 0; i < numPlainDspComponents; ++i)
        parts[i] = {static_cast<DspComponent>(i), 1.0f};
    for (std::size_t i = 0; i < size; ++i)
        parts[numPlainDspComponents + i] = rest[i];
    return parts;
}

/// A toggle formula reads inputs and the selected rates of other components.
template <class Model>
using DspToggle = float (*)(const Model& model, typename Model::Params& params, const typename Model::Data& data);

/// A component's toggle formula in each group of modes, or the one for all.
template <class Model, std::size_t groups>
struct DspToggleRow {
    constexpr DspToggleRow(DspComponent of, DspToggle<Model> inAllGroups) : component(of)
    {
        byGroup.fill(inAllGroups);
    }
    template <class... Toggles>
    requires(sizeof...(Toggles) == groups && groups > 1) constexpr DspToggleRow(DspComponent of, Toggles... toggles)
        : component(of), byGroup{toggles...}
    {
    }

    DspComponent component;
    std::array<DspToggle<Model>, groups> byGroup{};
};

/// The toggle formulas, indexed by component and group.
template <class Model, std::size_t groups, std::size_t rows>
constexpr auto dspToggles(const DspToggleRow<Model, groups> (&list)[rows])
{
    PerDspComponent<std::array<DspToggle<Model>, groups>> toggles{};
    for (const auto& row : list)
        toggles[indexOf(row.component)] = row.byGroup;
    return toggles;
}

/// The cells of one metric, by member.
template <class FloatEnum, class Member, std::size_t members>
struct DspMetricCells {
    std::array<FloatEnum, members> cells{};

    constexpr FloatEnum& operator()(Member member)
    {
        return cells[static_cast<std::size_t>(member)];
    }
    constexpr FloatEnum operator()(Member member) const
    {
        return cells[static_cast<std::size_t>(member)];
    }
};

/// The cells behind the metrics of ZelmDspModel, under the metrics' names. The rows of the cells fill it, so that a
/// cell is named once; a metric that a model lacks stays empty.
template <class FloatEnum, std::size_t modes>
struct DspCells {
    using PerComponent = DspMetricCells<FloatEnum, DspComponent, static_cast<std::size_t>(DspComponent::numComponents)>;
    PerComponent dynamicCurrent, offCurrent, toggleRate, componentCurrent;
    std::array<PerComponent, modes> rates;
    DspMetricCells<FloatEnum, int, modes> aggregatedRate;
    DspMetricCells<FloatEnum, DspWhole, 1> aggregatedToggleRate, adjustment;

    template <DspComponent component>
    constexpr FloatEnum& rate(int mode)
    {
        return rates[static_cast<std::size_t>(mode)](component);
    }
};

} // namespace zelm

template <class Derived, class Params, class Data>
void ZelmDspModel<Derived, Params, Data>::pullOutputs(Params& params, const Data& data) const
{
    self().calculateDynamicVccintCurrent(params, data);
    self().calculateDynamicVccintPower(params, data);
    self().viewOperationalMode(params, data);
    self().calculateVoltageScaling(params, data);
}

template <class Derived, class Params, class Data>
std::string_view ZelmDspModel<Derived, Params, Data>::integerUsage(Whole, Params& params, const Data& data) const
{
    return this->once(params[Params::DSP_USAGE], [&] {
        const std::string_view multUsed = self().viewMultUsed(params, data);
        const std::string_view mregUsed = self().viewMregUsed(params, data);
        const std::string_view preaddUsed = self().viewPreaddUsed(params, data);
        const std::string_view adregUsed = self().viewAdregUsed(params, data);
        return zelm::dspKey({"MULT_", multUsed, "_MREG_", mregUsed, "_PREADD_", preaddUsed, "_ADREG_", adregUsed});
    });
}

template <class Derived, class Params, class Data>
std::string_view ZelmDspModel<Derived, Params, Data>::operationalMode(Whole, Params& params, const Data& data) const
{
    return this->once(params[Params::OPERATIONAL_MODE], [&] {
        return data.findOperationalModeMap(Derived::Slice::family, self().viewDspUsage(params, data));
    });
}

template <class Derived, class Params, class Data>
float ZelmDspModel<Derived, Params, Data>::voltageScaling(Whole, Params& params, const Data& data) const
{
    return this->once(params[Params::VOLTAGE_SCALING], [&] {
        const float vccint = self().getVccint(params, data);
        const float normalized = data.findScaleFactors("VCCINT_NORMALIZED");
        const double exponent = data.findScaleFactors("CURRENT_VOLTAGE_EXPONENTIAL_FACTOR");
        const double ratio = zelm::ratioOrZero(vccint, normalized);
        return std::pow(ratio, exponent);
    });
}

template <class Derived, class Params, class Data>
float ZelmDspModel<Derived, Params, Data>::measured(Component component, std::string_view measure, Params& params,
                                                    const Data& data) const
{
    const std::string_view mode = self().viewOperationalMode(params, data);
    const std::string_view usage = self().viewOpmodeUsage(params, data);
    return data.findDynamicData(Derived::Slice::family, mode, usage, zelm::keyOf(component), measure);
}

template <class Derived, class Params, class Data>
float ZelmDspModel<Derived, Params, Data>::dynamicCurrent(Component component, Params& params, const Data& data) const
{
    return this->once(params[Derived::Slice::cells.dynamicCurrent(component)],
                      [&] { return measured(component, "DYNAMIC_MA_MHZ", params, data); });
}

template <class Derived, class Params, class Data>
float ZelmDspModel<Derived, Params, Data>::offCurrent(Component component, Params& params, const Data& data) const
{
    return this->once(params[Derived::Slice::cells.offCurrent(component)],
                      [&] { return measured(component, "OFF_CURRENT_MA", params, data); });
}

template <class Derived, class Params, class Data>
float ZelmDspModel<Derived, Params, Data>::rateIn(int mode, Component component, Params& params, const Data& data) const
{
    const auto index = static_cast<std::size_t>(mode);
    return this->once(params[Derived::Slice::cells.rates[index](component)], [&] {
        const auto group = static_cast<std::size_t>(Derived::Slice::modes[index].group);
        const std::string_view useGlobal = self().viewUseGlobalTr(params, data);
        const float global = self().getGlobalTr(params, data);
        const float own = Derived::Slice::toggles[zelm::indexOf(component)][group](self(), params, data);
        return useGlobal == "YES" ? global : own;
    });
}

// Pulls a rate of every mode, and picks the operational mode's; 0 in a mode that the slice doesn't have.
template <class Derived, class Params, class Data>
template <class Rate>
float ZelmDspModel<Derived, Params, Data>::selected(Rate rate, Params& params, const Data& data) const
{
    const std::string_view operational = self().viewOperationalMode(params, data);
    float picked = 0.0f;
    for (int mode = 0; mode < static_cast<int>(Derived::Slice::modes.size()); ++mode) {
        const float inMode = rate(mode);
        if (operational == Derived::Slice::modes[static_cast<std::size_t>(mode)].key)
            picked = inMode;
    }
    return picked;
}

template <class Derived, class Params, class Data>
float ZelmDspModel<Derived, Params, Data>::toggleRate(Component component, Params& params, const Data& data) const
{
    return this->once(params[Derived::Slice::cells.toggleRate(component)], [&] {
        return selected([&](int mode) { return rateIn(mode, component, params, data); }, params, data);
    });
}

template <class Derived, class Params, class Data>
float ZelmDspModel<Derived, Params, Data>::aggregatedToggleRate(Whole, Params& params, const Data& data) const
{
    return this->once(params[Params::AGGREGATED_TR], [&] {
        return selected([&](int mode) { return aggregatedRate(mode, params, data); }, params, data);
    });
}

template <class Derived, class Params, class Data>
float ZelmDspModel<Derived, Params, Data>::aggregatedRate(int mode, Params& params, const Data& data) const
{
    return this->once(params[Derived::Slice::cells.aggregatedRate(mode)], [&] {
        const auto weighted = [&](const zelm::DspWeight& part) {
            const float dynamic = self().dynamicCurrent(part.component, params, data);
            const float toggle = toggleRate(part.component, params, data);
            return dynamic * toggle * part.weight;
        };
        float rates = weighted(Derived::Slice::aggregate[0]);
        for (std::size_t i = 1; i < Derived::Slice::aggregate.size(); ++i)
            rates += weighted(Derived::Slice::aggregate[i]);
        const float sum = self().dynamicCurrent(componentSum, params, data);
        return zelm::ratioOrZero(rates, sum);
    });
}

template <class Derived, class Params, class Data>
float ZelmDspModel<Derived, Params, Data>::componentCurrent(Component component, Params& params, const Data& data) const
{
    return this->once(params[Derived::Slice::cells.componentCurrent(component)], [&] {
        const float dynamic = self().dynamicCurrent(component, params, data);
        const float toggle = toggleRate(component, params, data);
        const float simulated = data.findScaleFactors("SIMULATED_TR");
        const double clock = self().getClockFreq(params, data);
        const float off = self().offCurrent(component, params, data);
        const double scaling = self().calculateVoltageScaling(params, data);
        const float perMegahertz = zelm::ratioOrZero(dynamic * toggle, simulated);
        const float idle = toggle * off; // kept: the off current follows the toggle rate
        return (perMegahertz * clock + idle) * scaling;
    });
}

template <class Derived, class Params, class Data>
float ZelmDspModel<Derived, Params, Data>::adjustment(Whole, Params& params, const Data& data) const
{
    return this->once(params[Params::TOTAL_COMPONENT_ADJ_CURRENT], [&] {
        const float total = self().dynamicCurrent(totalMeasured, params, data);
        const float sum = self().dynamicCurrent(componentSum, params, data);
        const float clock = self().getClockFreq(params, data);
        const float scaling = self().calculateVoltageScaling(params, data);
        return (total - sum) * clock * scaling; // kept: may be negative
    });
}

template <class Derived, class Params, class Data>
float ZelmDspModel<Derived, Params, Data>::componentsCurrent(Params& params, const Data& data) const
{
    float sum = componentCurrent(Derived::Slice::components[0], params, data);
    for (std::size_t i = 1; i < Derived::Slice::components.size(); ++i)
        sum += componentCurrent(Derived::Slice::components[i], params, data);
    return sum;
}

template <class Derived, class Params, class Data>
float ZelmDspModel<Derived, Params, Data>::groupCurrent(Whole, Params& params, const Data& data) const
{
    return this->once(params[Params::DYNAMIC_VCCINT_CURRENT], [&] {
        const float components = self().componentsCurrent(params, data);
        const float rest = self().calculateTotalComponentAdjCurrent(params, data);
        const float count = static_cast<float>(self().getNumDsp(params, data));
        return (components + rest) * count;
    });
}

template <class Derived, class Params, class Data>
float ZelmDspModel<Derived, Params, Data>::groupPower(Whole, Params& params, const Data& data) const
{
    return this->once(params[Params::DYNAMIC_VCCINT_POWER], [&] {
        const float current = self().calculateDynamicVccintCurrent(params, data);
        const float vccint = self().getVccint(params, data);
        return current * vccint;
    });
}

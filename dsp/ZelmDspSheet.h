#pragma once

// What the sheets of the DSP blocks share: ZelmDspSheet, the base of the five arithmetic models, with the tables that
// such a model adds to it.

#include "framework/ZelmSheet.h"

#include <array>
#include <cmath>
#include <cstddef>
#include <initializer_list>
#include <string_view>

namespace zelm {

/// The parts of a DSP slice that are measured apart, of all kinds of slices, and the two totals beside them.
enum class DspComponent : int {
    abData,
    preaddData,
    cData,
    alureg,
    alumux,
    aluadd,
    preadd,
    mult,
    mData,
    patdet,
    fpExp,
    fpAdd,
    fpNorm,
    output,
    optinv,
    complex,
    complexStg0,
    complexStg1,
    cascDelay,
    wideXor,
    componentSum,
    totalMeasured,
    numComponents
};

/// Things by component, or by the number of a mode.
template <class Value, class Member = DspComponent, std::size_t members = std::size_t(DspComponent::numComponents)>
struct DspPer {
    std::array<Value, members> values{};

    constexpr Value& operator()(Member member)
    {
        return values[static_cast<std::size_t>(member)];
    }
    constexpr const Value& operator()(Member member) const
    {
        return values[static_cast<std::size_t>(member)];
    }
};

/// The key of each component in the tables.
inline constexpr DspPer<Key> kDspKeys{
    {"AB_DATA",      "PREADD_DATA",  "C_DATA",     "ALUREG",   "ALUMUX",        "ALUADD",        "PREADD", "MULT",
     "M_DATA",       "PATDET",       "FP_EXP",     "FP_ADD",   "FP_NORM",       "OUTPUT",        "OPTINV", "COMPLEX",
     "COMPLEX_STG0", "COMPLEX_STG1", "CASC_DELAY", "WIDE_XOR", "COMPONENT_SUM", "TOTAL_MEASURED"}};

/// An operational mode: its key, and the group of modes that share their toggle formulas.
struct DspMode {
    std::string_view key;
    std::size_t group;
};

/// A component's part in the aggregated toggle rate.
struct DspWeight {
    DspComponent component;
    float weight;
};

/// The components that every slice has stand first in DspComponent, in the order of every sum.
inline constexpr std::size_t kPlainDspComponents = static_cast<std::size_t>(DspComponent::optinv) + 1;

/// The plain components, then the given ones.
template <class... Rest>
constexpr auto dspComponents(Rest... rest)
{
    std::array<DspComponent, kPlainDspComponents + sizeof...(rest)> components{};
    std::size_t i = 0;
    for (; i < kPlainDspComponents; ++i)
        components[i] = static_cast<DspComponent>(i);
    ((components[i++] = rest), ...);
    return components;
}

/// The plain components at full weight, then the given parts.
template <std::size_t size>
constexpr auto dspAggregate(const DspWeight (&rest)[size])
{
    std::array<DspWeight, kPlainDspComponents + size> parts{};
    for (std::size_t i = 0; i < kPlainDspComponents; ++i)
        parts[i] = {static_cast<DspComponent>(i), 1.0f};
    for (std::size_t i = 0; i < size; ++i)
        parts[kPlainDspComponents + i] = rest[i];
    return parts;
}

/// A toggle formula of a sheet, or a cell that a component takes its rate from.
template <class Sheet>
using DspToggle = float (Sheet::*)() const;

/// A component's toggle formula in all groups of modes, or in each of two, three or five. (Left-out ones as null
/// pointers would be shorter, but comparing them is no constant expression under the sanitizers.)
template <class Sheet>
struct DspToggleRow {
    using Toggle = DspToggle<Sheet>;

    constexpr DspToggleRow(DspComponent of, Toggle inAll) : DspToggleRow(of, inAll, inAll, inAll) {}
    constexpr DspToggleRow(DspComponent of, Toggle first, Toggle second) : DspToggleRow(of, first, second, first) {}
    constexpr DspToggleRow(DspComponent of, Toggle first, Toggle second, Toggle third)
        : DspToggleRow(of, first, second, third, first, first)
    {
    }
    constexpr DspToggleRow(DspComponent of, Toggle first, Toggle second, Toggle third, Toggle fourth, Toggle fifth)
        : component(of), byGroup{first, second, third, fourth, fifth}
    {
    }

    DspComponent component;
    std::array<Toggle, 5> byGroup;
};

/// The toggle formulas by component and group.
template <class Sheet, std::size_t rows>
constexpr auto dspToggles(const DspToggleRow<Sheet> (&list)[rows])
{
    DspPer<std::array<DspToggle<Sheet>, 5>> toggles;
    for (const auto& row : list)
        toggles(row.component) = row.byGroup;
    return toggles;
}

/// The cells behind the metrics of ZelmDspSheet, under the metrics' names. The rows of the cells fill it, so that a
/// cell is named once; a metric that a model lacks stays empty.
template <class FloatEnum, std::size_t modes>
struct DspCells {
    DspPer<FloatEnum> componentCurrent, dynamicCurrent, offCurrent, toggleRate;
    DspPer<DspPer<FloatEnum>, int, modes> rates;
    DspPer<FloatEnum, int, modes> aggregatedRate;

    template <DspComponent component>
    constexpr FloatEnum& rate(int mode)
    {
        return rates(mode)(component);
    }
};

/// Whether the parts, joined by underscores, are the cell's name.
constexpr bool dspNamed(std::string_view cell, std::initializer_list<std::string_view> parts)
{
    for (const std::string_view part : parts) {
        if (!cell.starts_with(part))
            return false;
        cell.remove_prefix(part.size());
        cell.remove_prefix(cell.starts_with('_') ? 1 : 0);
    }
    return cell.empty();
}

/// Whether a family's cell has the name that member and metric make up, under the metrics' names.
template <std::size_t modes>
struct DspNames {
    std::string_view family;
    std::array<DspMode, modes> modeRows;

    static constexpr bool componentCurrent(std::string_view cell, DspComponent component)
    {
        return dspNamed(cell, {kDspKeys(component), "CURRENT"});
    }
    static constexpr bool dynamicCurrent(std::string_view cell, DspComponent component)
    {
        return dspNamed(cell, {kDspKeys(component), "DYNAMIC_CURRENT"});
    }
    static constexpr bool offCurrent(std::string_view cell, DspComponent component)
    {
        return dspNamed(cell, {kDspKeys(component), "OFF_CURRENT"});
    }
    static constexpr bool toggleRate(std::string_view cell, DspComponent component)
    {
        return dspNamed(cell, {kDspKeys(component), "TR"});
    }
    constexpr bool aggregatedRate(std::string_view cell, int mode) const
    {
        return dspNamed(cell, {family, modeRows[static_cast<std::size_t>(mode)].key, "AGGREGATED_TR"});
    }
    template <DspComponent component>
    constexpr bool rate(std::string_view cell, int mode) const
    {
        return dspNamed(cell, {family, modeRows[static_cast<std::size_t>(mode)].key, kDspKeys(component), "TR"});
    }
};

} // namespace zelm

/// What the arithmetic models of the DSP slice share. Each component has a measured current per megahertz, an off
/// current, and a toggle rate that the operational mode selects; the components' sum is then corrected towards the
/// measured whole.
///
/// A model's sheet adds the family's key, its modes, components and aggregate, ownRate, and dsp/ZelmDspCells.inc.
template <class Model>
struct ZelmDspSheet : zelm::Sheet<Model> {
    using Base = ZelmDspSheet;
    using Component = zelm::DspComponent;
    using zelm::Sheet<Model>::Sheet;
    using zelm::Sheet<Model>::self;
    using zelm::Sheet<Model>::value;
    using typename zelm::Sheet<Model>::Key;
    using typename zelm::Sheet<Model>::Text;

    void pullOutputs() const
    {
        self().DynamicVccintCurrent();
        self().DynamicVccintPower();
        self().OperationalMode();
        self().VoltageScaling();
    }

    std::string_view computeOperationalMode() const
    {
        return self().findOperationalModeMap(self().familyKey, self().DspUsage());
    }

    double computeVoltageScaling() const
    {
        const float vccint = self().Vccint();
        const float normalized = self().findScaleFactors("VCCINT_NORMALIZED");
        const double exponent = self().findScaleFactors("CURRENT_VOLTAGE_EXPONENTIAL_FACTOR");
        const double ratio = zelm::ratioOrZero(vccint, normalized);
        return std::pow(ratio, exponent);
    }

    // ---- Measured currents ----

    float dynamicCurrent(Component component) const
    {
        return self().measured(component, "DYNAMIC_MA_MHZ");
    }

    float offCurrent(Component component) const
    {
        return self().measured(component, "OFF_CURRENT_MA");
    }

    float measured(Component component, const Key& measure) const
    {
        const Key& mode = self().OperationalMode();
        const Key& usage = self().OpmodeUsage();
        return self().findDynamicData(self().familyKey, mode, usage, zelm::kDspKeys(component), measure);
    }

    float dynamicOf(Component component) const
    {
        return value(self().cells.dynamicCurrent(component));
    }

    float offOf(Component component) const
    {
        return value(self().cells.offCurrent(component));
    }

    // ---- Toggle rates ----

    template <Component component>
    float rate(int mode) const
    {
        const std::size_t group = self().modes[static_cast<std::size_t>(mode)].group;
        const Text useGlobal = self().UseGlobalTr();
        const float global = self().GlobalTr();
        const float own = self().ownRate(component, group);
        return useGlobal == "YES" ? global : own;
    }

    /// Pulls a cell of every mode, and picks the operational mode's; 0 in a mode that the slice doesn't have.
    template <class CellOf>
    float selected(CellOf cellOf) const
    {
        const Text operational = self().OperationalMode();
        float picked = 0.0f;
        int number = 0;
        for (const zelm::DspMode& mode : self().modes) {
            const float inMode = value(cellOf(number++));
            picked = operational == mode.key ? inMode : picked;
        }
        return picked;
    }

    float toggleRate(Component component) const
    {
        return selected([&](int mode) { return self().cells.rates(mode)(component); });
    }

    float computeAggregatedTr() const
    {
        return selected([&](int mode) { return self().cells.aggregatedRate(mode); });
    }

    /// The same for every mode: the rates are the operational mode's.
    float aggregatedRate(int) const
    {
        const auto weighted = [&](const zelm::DspWeight& part) {
            const float dynamic = self().dynamicOf(part.component);
            const float toggle = value(self().cells.toggleRate(part.component));
            return dynamic * toggle * part.weight;
        };
        float rates = weighted(self().aggregate[0]);
        for (std::size_t i = 1; i < self().aggregate.size(); ++i)
            rates += weighted(self().aggregate[i]);
        const float sum = self().dynamicOf(Component::componentSum);
        return zelm::ratioOrZero(rates, sum);
    }

    // ---- Currents and power ----

    double componentCurrent(Component component) const
    {
        const float dynamic = self().dynamicOf(component);
        const float toggle = value(self().cells.toggleRate(component));
        const float simulated = self().findScaleFactors("SIMULATED_TR");
        const double clock = self().ClockFreq();
        const float off = self().offOf(component);
        const double scaling = self().VoltageScaling();
        const float perMegahertz = zelm::ratioOrZero(dynamic * toggle, simulated);
        const float idle = toggle * off; // kept: the off current follows the toggle rate
        return (perMegahertz * clock + idle) * scaling;
    }

    float computeTotalComponentAdjCurrent() const
    {
        const float total = self().dynamicOf(Component::totalMeasured);
        const float sum = self().dynamicOf(Component::componentSum);
        const float clock = self().ClockFreq();
        const float scaling = self().VoltageScaling();
        return (total - sum) * clock * scaling; // kept: may be negative
    }

    float componentsCurrent() const
    {
        float sum = value(self().cells.componentCurrent(self().components[0]));
        for (std::size_t i = 1; i < self().components.size(); ++i)
            sum += value(self().cells.componentCurrent(self().components[i]));
        return sum;
    }

    float computeDynamicVccintCurrent() const
    {
        const float components = self().componentsCurrent();
        const float rest = self().TotalComponentAdjCurrent();
        const float count = static_cast<float>(self().NumDsp());
        return (components + rest) * count;
    }

    float computeDynamicVccintPower() const
    {
        const float current = self().DynamicVccintCurrent();
        const float vccint = self().Vccint();
        return current * vccint;
    }
};

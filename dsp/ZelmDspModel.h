#pragma once

#include "framework/ZelmModelBlock.h"

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

/// The member of the cells that belong to the slice and not to one of its components.
enum class DspWhole : int { slice };

/// The modes of the 24-bit integer slices, the newer and the older.
struct DspInt24Modes {
    enum Mode : int {
        multAluMreg,
        preaddMultAlu,
        aluOnly,
        multAluNomreg,
        preaddMultAluNomreg,
        preaddMultAluNomregNoadreg,
        preaddMultAluNoadreg
    };
};

} // namespace zelm

/// What the arithmetic models of the DSP slice share. Each component has a measured current per megahertz, an off
/// current, and a toggle rate that the operational mode selects; the components' sum is then corrected towards the
/// measured whole. A model adds its Slice: family, modes, components and the toggle formula of each.
/// The functions are the metrics that the rows of the cells name.
template <class Derived, class ParamsT, class DataT>
class ZELM_EXPORT ZelmDspModel : public ZelmModelBlock<Derived, ParamsT, DataT> {
public:
    using Params = ParamsT;
    using Data = DataT;

    void pullOutputs(Params& params, const Data& data) const;

protected:
    using Component = zelm::DspComponent;
    using enum zelm::DspComponent;
    using Whole = zelm::DspWhole;
    using enum zelm::DspWhole;

    ZelmDspModel() = default;
    ~ZelmDspModel() = default;

    std::string_view integerUsage(Whole, Params& params, const Data& data) const;
    std::string_view operationalMode(Whole, Params& params, const Data& data) const;
    float voltageScaling(Whole, Params& params, const Data& data) const;

    float dynamicCurrent(Component component, Params& params, const Data& data) const;
    float offCurrent(Component component, Params& params, const Data& data) const;
    float toggleRate(Component component, Params& params, const Data& data) const;
    float componentCurrent(Component component, Params& params, const Data& data) const;

    /// A component's toggle rate in one mode, a Mode of the model.
    template <zelm::DspComponent component>
    float rate(int mode, Params& params, const Data& data) const
    {
        return rateIn(mode, component, params, data);
    }
    float rateIn(int mode, Component component, Params& params, const Data& data) const;
    float aggregatedRate(int mode, Params& params, const Data& data) const;
    float aggregatedToggleRate(Whole, Params& params, const Data& data) const;

    float adjustment(Whole, Params& params, const Data& data) const;
    float componentsCurrent(Params& params, const Data& data) const;
    float groupCurrent(Whole, Params& params, const Data& data) const;
    float groupPower(Whole, Params& params, const Data& data) const;

private:
    const Derived& self() const
    {
        return static_cast<const Derived&>(*this);
    }
    template <class Rate>
    float selected(Rate rate, Params& params, const Data& data) const;
    float measured(Component component, std::string_view measure, Params& params, const Data& data) const;
};

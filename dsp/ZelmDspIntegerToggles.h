#pragma once

// Toggle formulas of the DSP slices that compute in integers. Rates of several inputs are averaged, widths in bits
// weigh data against controls, and nothing that is clocked toggles more than every other cycle.

#include "dsp/ZelmDspModelImpl.h"

#include <string_view>

/// What the integer slices have in common beside their formulas.
struct ZelmDspIntegerSlice {
    enum Group { withMult, withPreadd, aluAlone };

    static constexpr auto components = zelm::dspComponents(zelm::DspComponent::complex, zelm::DspComponent::cascDelay);
    // kept: the complex stage counts half among the rates, and whole in the sum of currents that divides them
    static constexpr auto aggregate =
        zelm::dspAggregate({{zelm::DspComponent::complex, 0.5f}, {zelm::DspComponent::cascDelay, 1.0f}});
};

/// The modes of the 24-bit slices, in the order of zelm::DspInt24Modes.
inline constexpr std::array<zelm::DspMode, 7> kDspInt24Modes{{
    {"MULT_ALU_MREG", ZelmDspIntegerSlice::withMult},
    {"PREADD_MULT_ALU", ZelmDspIntegerSlice::withPreadd},
    {"ALU_ONLY", ZelmDspIntegerSlice::aluAlone},
    {"MULT_ALU_NOMREG", ZelmDspIntegerSlice::withMult},
    {"PREADD_MULT_ALU_NOMREG", ZelmDspIntegerSlice::withPreadd},
    {"PREADD_MULT_ALU_NOMREG_NOADREG", ZelmDspIntegerSlice::withPreadd},
    {"PREADD_MULT_ALU_NOADREG", ZelmDspIntegerSlice::withPreadd},
}};

/// The formulas of Model. Traits holds what sets the slice apart: widths in bits, caps and factors; decimal factors are
/// doubles.
template <class Model, class Traits>
struct ZelmDspIntegerToggles : ZelmHelperUtils {
    using Params = typename Model::Params;
    using Data = typename Model::Data;

    /// Two streams that meet: the mean of both and of the busier one.
    static float meeting(float a, float b)
    {
        return AVERAGE(a, b, MAX(a, b));
    }

    /// The slice's controls, whose rate grows by one factor where they change at run time and by another where not.
    static float controls(const Model& model, Params& params, const Data& data, double dynamicFactor,
                          double constFactor)
    {
        const std::string_view usage = model.viewOpmodeUsage(params, data);
        const double carry = model.getAluCtrlCarryinTr(params, data);
        return static_cast<float>(usage == "DYNAMIC" ? carry * dynamicFactor : carry * constFactor);
    }

    // ---- Rates that a component takes over ----

    static float abDataRate(const Model& model, Params& params, const Data& data)
    {
        return model.calculateAbDataTr(params, data);
    }

    static float abDataRateCapped(const Model& model, Params& params, const Data& data)
    {
        return MIN(0.5f, model.calculateAbDataTr(params, data));
    }

    static float aluaddRate(const Model& model, Params& params, const Data& data)
    {
        return model.calculateAluaddTr(params, data);
    }

    static float multRate(const Model& model, Params& params, const Data& data)
    {
        return model.calculateMultTr(params, data);
    }

    static float inputC(const Model& model, Params& params, const Data& data)
    {
        return model.getCTr(params, data);
    }

    static float outputP(const Model& model, Params& params, const Data& data)
    {
        return model.getPOutputTr(params, data);
    }

    static float carry(const Model& model, Params& params, const Data& data)
    {
        return model.getAluCtrlCarryinTr(params, data);
    }

    // ---- Formulas named by their component ----

    static float abDataAluAlone(const Model& model, Params& params, const Data& data)
    {
        const float a = model.getATr(params, data);
        const float b = model.getBTr(params, data);
        return AVERAGE(a, b);
    }

    static float abData(const Model& model, Params& params, const Data& data)
    {
        const std::string_view usage = model.viewOpmodeUsage(params, data);
        const float a = model.getATr(params, data);
        const float b = model.getBTr(params, data);
        return usage == "DYNAMIC" ? AVERAGE(a, b) : AVERAGE(Traits::widened(a), b);
    }

    static float preaddData(const Model& model, Params& params, const Data& data)
    {
        const float ab = model.calculateAbDataTr(params, data);
        const float inmode = model.getInmodeNegateTr(params, data);
        const float adder = model.calculatePreaddTr(params, data);
        return MIN(AVERAGE((ab * 27.0f + inmode * Traits::inmodeBits) / 27.0f, adder), Traits::preaddDataCap);
    }

    /// The ALU's registered controls and the optional inverters.
    static float aluControls(const Model& model, Params& params, const Data& data)
    {
        const std::string_view usage = model.viewOpmodeUsage(params, data);
        const float carryin = model.getAluCtrlCarryinTr(params, data);
        return usage == "DYNAMIC" ? MIN(0.5f, carryin * 17.0f / 15.0f) : MIN(0.5f, carryin * 17.0f / 6.0f);
    }

    static float alumux(const Model& model, Params& params, const Data& data)
    {
        const float ab = model.calculateAbDataTr(params, data);
        const float c = model.calculateCDataTr(params, data);
        const float m = model.calculateMDataTr(params, data);
        const float out = model.calculateOutputTr(params, data);
        const float carryin = model.getAluCtrlCarryinTr(params, data);
        return MIN(0.5f, (AVERAGE(ab, c, m, out) * Traits::aluBits + 9.0f * carryin) / Traits::aluBits);
    }

    static float preadd(const Model& model, Params& params, const Data& data)
    {
        const float ab = model.calculateAbDataTr(params, data);
        const float d = model.getDTr(params, data);
        const float inmode = model.getInmodeNegateTr(params, data);
        return MIN(0.5f, (meeting(ab, d) * 27.0f + 2.0f * inmode) / 27.0f);
    }

    static float mult(const Model& model, Params& params, const Data& data)
    {
        const float ab = model.calculateAbDataTr(params, data);
        const float inmode = model.getInmodeNegateTr(params, data);
        return MIN(0.5f, (ab * 51.0f + Traits::multControls(inmode)) / 51.0f);
    }

    static float multBehindPreadd(const Model& model, Params& params, const Data& data)
    {
        const float adder = model.calculatePreaddTr(params, data);
        const float ab = model.calculateAbDataTr(params, data);
        const float inmode = model.getInmodeNegateTr(params, data);
        return MIN(0.5f, (meeting(adder, ab) * 51.0f + Traits::multBehindPreaddControls(inmode)) / 51.0f);
    }

    static float fpAdd(const Model& model, Params& params, const Data& data)
    {
        const std::string_view usage = model.viewOpmodeUsage(params, data);
        const float carryin = model.getAluCtrlCarryinTr(params, data);
        const float c = model.calculateCDataTr(params, data);
        const float ab = model.calculateAbDataTr(params, data);
        const float out = model.calculateOutputTr(params, data);
        return usage == "DYNAMIC" ? static_cast<float>(carryin * Traits::fpAddControls) : AVERAGE(c, ab, out);
    }

    static float complex(const Model& model, Params& params, const Data& data)
    {
        const float ab = model.calculateAbDataTr(params, data);
        const float preaddDataRate = model.calculatePreaddDataTr(params, data);
        return AVERAGE(ab, preaddDataRate);
    }

    /// The cascade at constant operation mode, where its own and the input's bits weigh in full.
    static float cascadeOf(float out, float ab)
    {
        return (out * Traits::aluBits + ab * Traits::cascadeInBits) / (Traits::aluBits + Traits::cascadeInBits);
    }

    static float cascDelay(const Model& model, Params& params, const Data& data)
    {
        const std::string_view usage = model.viewOpmodeUsage(params, data);
        const float out = model.getPOutputTr(params, data);
        const float ab = model.calculateAbDataTr(params, data);
        return usage == "DYNAMIC" ? AVERAGE(out, ab) : cascadeOf(out, ab);
    }
};

#pragma once

// The base of the DSP slices that compute in integers, real or complex. Rates of several inputs are averaged, widths in
// bits weigh data against controls, and nothing that is clocked toggles more than every other cycle.

#include "dsp/ZelmDspSheet.h"

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace zelm {

/// The groups of modes of the real slices.
enum DspIntegerGroup : std::size_t { withMult, withPreadd, aluAlone };

/// The modes of the 24-bit slices, the newer and the older.
enum DspInt24Mode : int {
    multAluMreg,
    preaddMultAlu,
    aluOnly,
    multAluNomreg,
    preaddMultAluNomreg,
    preaddMultAluNomregNoadreg,
    preaddMultAluNoadreg
};
inline constexpr std::array<DspMode, 7> kDspInt24Modes{{
    {"MULT_ALU_MREG", withMult},
    {"PREADD_MULT_ALU", withPreadd},
    {"ALU_ONLY", aluAlone},
    {"MULT_ALU_NOMREG", withMult},
    {"PREADD_MULT_ALU_NOMREG", withPreadd},
    {"PREADD_MULT_ALU_NOMREG_NOADREG", withPreadd},
    {"PREADD_MULT_ALU_NOADREG", withPreadd},
}};

/// Two streams that meet: the mean of both and of the busier one.
inline float meeting(float a, float b)
{
    return ZelmHelperUtils::AVERAGE(a, b, ZelmHelperUtils::MAX(a, b));
}

} // namespace zelm

/// A model's sheet adds what sets the slice apart: widths in bits, caps and factors; decimal factors are doubles.
template <class Model>
struct ZelmDspIntegerSheet : ZelmDspSheet<Model> {
    using Base = ZelmDspIntegerSheet;
    using ZelmDspSheet<Model>::ZelmDspSheet;
    using ZelmDspSheet<Model>::self;
    using ZelmDspSheet<Model>::AVERAGE;
    using ZelmDspSheet<Model>::MIN;
    using typename ZelmDspSheet<Model>::Component;
    using typename ZelmDspSheet<Model>::Key;
    using typename ZelmDspSheet<Model>::Text;

    /// Of the real slices. The complex ones have two stages instead of one.
    static constexpr auto components = zelm::dspComponents(Component::complex, Component::cascDelay);
    // kept: the complex stage counts half among the rates, and whole in the sum of currents that divides them
    static constexpr auto aggregate = zelm::dspAggregate({{Component::complex, 0.5f}, {Component::cascDelay, 1.0f}});

    zelm::Composed computeDspUsage() const
    {
        const Text multUsed = self().MultUsed();
        const Text mregUsed = self().MregUsed();
        const Text preaddUsed = self().PreaddUsed();
        const Text adregUsed = self().AdregUsed();
        return zelm::Composed{"MULT_", multUsed, "_MREG_", mregUsed, "_PREADD_", preaddUsed, "_ADREG_", adregUsed};
    }

    // ---- Toggle formulas ----

    float abDataOfAluAlone() const
    {
        const float a = self().ATr();
        const float b = self().BTr();
        return AVERAGE(a, b);
    }

    float abDataOfInputs() const
    {
        const Text usage = self().OpmodeUsage();
        const float a = self().ATr();
        const float b = self().BTr();
        return usage == "DYNAMIC" ? AVERAGE(a, b) : AVERAGE(self().widened(a), b);
    }

    float abDataCapped() const
    {
        return MIN(0.5f, self().AbDataTr());
    }

    float preaddPath() const
    {
        const float ab = self().AbDataTr();
        const float inmode = self().InmodeNegateTr();
        const float adder = self().PreaddTr();
        return MIN(AVERAGE((ab * 27.0f + inmode * self().inmodeBits) / 27.0f, adder), self().preaddDataCap);
    }

    /// The slice's controls, whose rate grows by one factor where they change at run time and by another where not.
    float controls(double dynamicFactor, double constFactor) const
    {
        const Text usage = self().OpmodeUsage();
        const double carry = self().AluCtrlCarryinTr();
        return static_cast<float>(usage == "DYNAMIC" ? carry * dynamicFactor : carry * constFactor);
    }

    /// The ALU's registered controls and the optional inverters.
    float aluControls() const
    {
        const Text usage = self().OpmodeUsage();
        const float carryin = self().AluCtrlCarryinTr();
        return usage == "DYNAMIC" ? MIN(0.5f, carryin * 17.0f / 15.0f) : MIN(0.5f, carryin * 17.0f / 6.0f);
    }

    float aluInputs() const
    {
        const float ab = self().AbDataTr();
        const float c = self().CDataTr();
        const float m = self().MDataTr();
        const float out = self().OutputTr();
        const float carryin = self().AluCtrlCarryinTr();
        return MIN(0.5f, (AVERAGE(ab, c, m, out) * self().aluBits + 9.0f * carryin) / self().aluBits);
    }

    float preadder() const
    {
        const float ab = self().AbDataTr();
        const float d = self().DTr();
        const float inmode = self().InmodeNegateTr();
        return MIN(0.5f, (zelm::meeting(ab, d) * 27.0f + 2.0f * inmode) / 27.0f);
    }

    float multiplier() const
    {
        const float ab = self().AbDataTr();
        const float inmode = self().InmodeNegateTr();
        return MIN(0.5f, (ab * 51.0f + self().multControls(inmode)) / 51.0f);
    }

    float multBehindPreadd() const
    {
        const float adder = self().PreaddTr();
        const float ab = self().AbDataTr();
        const float inmode = self().InmodeNegateTr();
        return MIN(0.5f, (zelm::meeting(adder, ab) * 51.0f + self().multBehindPreaddControls(inmode)) / 51.0f);
    }

    float fpAdder() const
    {
        const Text usage = self().OpmodeUsage();
        const float carryin = self().AluCtrlCarryinTr();
        const float c = self().CDataTr();
        const float ab = self().AbDataTr();
        const float out = self().OutputTr();
        return usage == "DYNAMIC" ? static_cast<float>(carryin * self().fpAddControls) : AVERAGE(c, ab, out);
    }

    float complexStage() const
    {
        const float ab = self().AbDataTr();
        const float path = self().PreaddDataTr();
        return AVERAGE(ab, path);
    }

    /// The cascade at constant operation mode, where its own and the input's bits weigh in full.
    float cascadeOf(float out, float ab) const
    {
        return (out * self().aluBits + ab * self().cascadeInBits) / (self().aluBits + self().cascadeInBits);
    }

    float cascade() const
    {
        const Text usage = self().OpmodeUsage();
        const float out = self().POutputTr();
        const float ab = self().AbDataTr();
        return usage == "DYNAMIC" ? AVERAGE(out, ab) : cascadeOf(out, ab);
    }
};

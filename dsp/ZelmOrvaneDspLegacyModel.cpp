#include "dsp/ZelmOrvaneDspLegacyModel.h"

#include "dsp/ZelmDspIntegerSheet.h"
#include "framework/ZelmModelBlockImpl.h"

#define ZELM_MODEL ZelmOrvaneDspLegacyModel
#define ZELM_CELL_ROWS "dsp/ZelmOrvaneDspLegacyCells.def"
#define ZELM_TABLE_ROWS "dsp/ZelmOrvaneDspLegacyTables.def"

namespace {

using enum zelm::DspComponent;
using enum zelm::DspInt24Mode;

} // namespace

struct ZelmOrvaneDspLegacyModel::Sheet : ZelmDspIntegerSheet<ZelmOrvaneDspLegacyModel> {
#include "framework/ZelmAccessors.inc"

    static constexpr Key familyKey = "LEGACY_INT24";
    static constexpr auto modes = zelm::kDspInt24Modes;
#include "dsp/ZelmDspCells.inc"

    static constexpr float inmodeBits = 5.0f;
    static constexpr float preaddDataCap = 0.5f;
    static constexpr float aluBits = 48.0f;
    static constexpr float cascadeInBits = 45.0f;

    static float widened(float a)
    {
        return a * 30.0f / 27.0f;
    }

    static float multBehindPreaddControls(float inmode)
    {
        return MIN(0.5f, static_cast<float>(inmode * 1.6));
    }

    float carryCapped() const
    {
        return MIN(0.5f, AluCtrlCarryinTr());
    }

    float multOfInputs() const
    {
        const Text usage = OpmodeUsage();
        const float adder = PreaddTr();
        const float a = ATr();
        const float b = BTr();
        const float inmode = InmodeNegateTr();
        const float ab = AbDataTr();
        const float merged = AVERAGE(adder, a, b, MAX(adder, a, b));
        return usage == "DYNAMIC" ? MIN(0.5f, (merged * 51.0f + inmode) / 51.0f) : MIN(0.5f, ab);
    }

    float fpAdder() const
    {
        const float ab = AbDataTr();
        const float c = CDataTr();
        const float out = OutputTr();
        return AVERAGE(ab, c, out);
    }

    float cascade() const
    {
        const Text usage = OpmodeUsage();
        const float ab = AbDataTr();
        const float path = PreaddDataTr();
        const float out = POutputTr();
        return usage == "DYNAMIC" ? AVERAGE(ab, path) : cascadeOf(out, ab);
    }

    float xorInputs() const
    {
        const float ab = AbDataTr();
        const float c = CDataTr();
        return AVERAGE(ab, c);
    }

    float ownRate(Component component, std::size_t group) const
    {
        using S = Sheet;
        // clang-format off
        static constexpr auto toggles = zelm::dspToggles<S>({
            // component  withMult            withPreadd            aluAlone
            {abData,      &S::abDataOfInputs, &S::abDataOfInputs,   &S::abDataOfAluAlone},
            {preaddData,  &S::preaddPath},
            {cData,       &S::CTr},
            {alureg,      &S::aluControls,    &S::aluControls,      &S::carryCapped},
            {alumux,      &S::aluInputs},
            {aluadd,      &S::POutputTr},
            {preadd,      &S::AbDataTr,       &S::preadder,         &S::AbDataTr},
            {mult,        &S::multOfInputs,   &S::multBehindPreadd, &S::abDataCapped},
            {mData,       &S::MultTr},
            {patdet,      &S::POutputTr},
            {fpExp,       &S::AbDataTr},
            {fpAdd,       &S::fpAdder},
            {fpNorm,      &S::AluaddTr},
            {output,      &S::POutputTr},
            {optinv,      &S::aluControls},
            {complex,     &S::complexStage},
            {cascDelay,   &S::cascade},
            {wideXor,     &S::xorInputs},
        });
        // clang-format on
        return (this->*toggles(component)[group])();
    }

    float computeWideXorCurrent() const
    {
        const Text used = WidexorUsed();
        const float toggle = WideXorTr();
        const float perToggle = findDynamicData("WIDE_XOR_CURRENT", "", "", "", "");
        return used == "YES" ? toggle * perToggle : 0.0f; // kept: neither the clock nor the voltage enters
    }

    float componentsCurrent() const
    {
        const float parts = Base::componentsCurrent();
        const float wideXorCurrent = WideXorCurrent();
        return parts + wideXorCurrent;
    }
};

#include "framework/ZelmModelBodies.inc"

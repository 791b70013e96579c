#include "dsp/ZelmOrvaneDspInt24Model.h"

#include "dsp/ZelmDspIntegerSheet.h"
#include "framework/ZelmModelBlockImpl.h"

#define ZELM_MODEL ZelmOrvaneDspInt24Model
#define ZELM_CELL_ROWS "dsp/ZelmOrvaneDspInt24Cells.def"
#define ZELM_TABLE_ROWS "dsp/ZelmOrvaneDspInt24Tables.def"

namespace {

using enum zelm::DspComponent;
using enum zelm::DspInt24Mode;

} // namespace

struct ZelmOrvaneDspInt24Model::Sheet : ZelmDspIntegerSheet<ZelmOrvaneDspInt24Model> {
#include "framework/ZelmAccessors.inc"

    static constexpr Key familyKey = "INT24";
    static constexpr auto modes = zelm::kDspInt24Modes;
#include "dsp/ZelmDspCells.inc"

    static constexpr float inmodeBits = 6.0f;
    static constexpr float preaddDataCap = 50.0f; // kept: not the 0.5 of the others
    static constexpr float aluBits = 58.0f;
    static constexpr float cascadeInBits = 51.0f;
    static constexpr double fpAddControls = 1.13333;

    static float widened(float a)
    {
        return static_cast<float>(a * 1.2593);
    }

    static float multControls(float inmode)
    {
        return MIN(0.5f, 8.0f * inmode);
    }

    static float multBehindPreaddControls(float inmode)
    {
        return MIN(0.5f, static_cast<float>(inmode * 1.33));
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
            {alureg,      &S::aluControls,    &S::aluControls,      &S::AluCtrlCarryinTr},
            {alumux,      &S::aluInputs},
            {aluadd,      &S::POutputTr},
            {preadd,      &S::abDataCapped,   &S::preadder,         &S::abDataCapped},
            {mult,        &S::multiplier,     &S::multBehindPreadd, &S::AbDataTr},
            {mData,       &S::MultTr},
            {patdet,      &S::POutputTr},
            {fpExp,       &S::AbDataTr},
            {fpAdd,       &S::fpAdder},
            {fpNorm,      &S::AluaddTr},
            {output,      &S::POutputTr},
            {optinv,      &S::aluControls,    &S::aluControls,      &S::AluCtrlCarryinTr},
            {complex,     &S::complexStage},
            {cascDelay,   &S::cascade},
        });
        // clang-format on
        return (this->*toggles(component)[group])();
    }
};

#include "framework/ZelmModelBodies.inc"

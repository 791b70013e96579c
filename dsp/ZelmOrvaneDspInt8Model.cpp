#include "dsp/ZelmOrvaneDspInt8Model.h"

#include "dsp/ZelmDspIntegerSheet.h"
#include "framework/ZelmModelBlockImpl.h"

#define ZELM_MODEL ZelmOrvaneDspInt8Model
#define ZELM_CELL_ROWS "dsp/ZelmOrvaneDspInt8Cells.def"
#define ZELM_TABLE_ROWS "dsp/ZelmOrvaneDspInt8Tables.def"

namespace {

using enum zelm::DspComponent;
using enum zelm::DspIntegerGroup;

enum Mode : int { multMreg, preaddMult, multNomreg, preaddMultNomreg, preaddMultNoadreg, preaddMultNomregNoadreg };
constexpr std::array<zelm::DspMode, 6> kModes{{{"MULT_MREG", withMult},
                                               {"PREADD_MULT", withPreadd},
                                               {"MULT_NOMREG", withMult},
                                               {"PREADD_MULT_NOMREG", withPreadd},
                                               {"PREADD_MULT_NOADREG", withPreadd},
                                               {"PREADD_MULT_NOMREG_NOADREG", withPreadd}}};

} // namespace

struct ZelmOrvaneDspInt8Model::Sheet : ZelmDspIntegerSheet<ZelmOrvaneDspInt8Model> {
#include "framework/ZelmAccessors.inc"

    static constexpr Key familyKey = "INT8";
    static constexpr auto modes = kModes;
#include "dsp/ZelmDspCells.inc"

    static constexpr float inmodeBits = 6.0f;
    static constexpr float preaddDataCap = 0.5f;
    static constexpr float aluBits = 58.0f;
    static constexpr float cascadeInBits = 54.0f;
    static constexpr double fpAddControls = 1.111;

    static float widened(float a)
    {
        return static_cast<float>(a * 1.2593);
    }

    static float multControls(float inmode)
    {
        return MIN(0.5f, static_cast<float>(inmode * 2.666));
    }

    static float multBehindPreaddControls(float inmode)
    {
        return inmode; // kept: neither factor nor cap behind the pre-adder
    }

    float aluControls() const
    {
        return MIN(0.5f, controls(1.111, 2.2221));
    }

    // kept: the inverters' cap is 50.0, and their factor 2.222 is not the ALU controls' 2.2221
    float inverters() const
    {
        return MIN(50.0f, controls(1.111, 2.222));
    }

    float ownRate(Component component, std::size_t group) const
    {
        using S = Sheet;
        // clang-format off
        static constexpr auto toggles = zelm::dspToggles<S>({
            // component  withMult          withPreadd
            {abData,      &S::abDataOfInputs},
            {preaddData,  &S::preaddPath},
            {cData,       &S::CTr},
            {alureg,      &S::aluControls},
            {alumux,      &S::aluInputs},
            {aluadd,      &S::POutputTr},
            {preadd,      &S::abDataCapped, &S::preadder},
            {mult,        &S::multiplier,   &S::multBehindPreadd},
            {mData,       &S::MultTr},
            {patdet,      &S::POutputTr},
            {fpExp,       &S::AbDataTr},
            {fpAdd,       &S::fpAdder},
            {fpNorm,      &S::AluaddTr},
            {output,      &S::POutputTr},
            {optinv,      &S::inverters},
            {complex,     &S::complexStage},
            {cascDelay,   &S::cascade},
        });
        // clang-format on
        return (this->*toggles(component)[group])();
    }
};

#include "framework/ZelmModelBodies.inc"

#include "dsp/ZelmOrvaneDspActivityModel.h"

#include "framework/ZelmModelBlockImpl.h"

#define ZELM_MODEL ZelmOrvaneDspActivityModel
#define ZELM_CELL_ROWS "dsp/ZelmOrvaneDspActivityCells.def"
#define ZELM_TABLE_ROWS "dsp/ZelmOrvaneDspActivityTables.def"

struct ZelmOrvaneDspActivityModel::Sheet : zelm::Sheet<ZelmOrvaneDspActivityModel> {
#include "framework/ZelmAccessors.inc"

    void pullOutputs() const
    {
        DisplayConfigStr();
        OutputToggleRate();
        OperationalMode();
        DspUsage();
    }

    zelm::Composed computeDspUsage() const
    {
        const Text mode = DspMode();
        const Text mult = MultUsed();
        const Text cInput = CInputUsed();
        const Text opmode = OpmodeUsage();
        const Text preadd = PreaddUsed();
        const Text b16 = Fpb16Used();
        const Text fpAdder = FpadderUsed();
        if (mode == "MACB_12X12_INT24" && mult == "YES" && cInput == "NO")
            return zelm::Composed{mode, "_MULT_YES_CINPUT_NO"};
        if (mode == "MACB_18X18_INT24" && mult == "YES")
            return zelm::Composed{mode, "_MULT_YES_", opmode};
        if (mode == "MACB_CPLX") // always multiplies, whatever MULT_USED says
            return zelm::Composed{mode, "_MULT_YES_", opmode};
        if (mode == "MACB_FP32")
            return zelm::Composed{mode, "_MULT_", mult, "_B16_", b16, "_ADDER_", fpAdder};
        if (mode == "MACB_INT8") // always multiplies, whatever MULT_USED says
            return zelm::Composed{mode, "_MULT_YES_PREADD_", preadd, "_", opmode};
        return zelm::Composed{mode, "_MULT_", mult, "_PREADD_", preadd, "_", opmode};
    }

    std::string_view computeOperationalMode() const
    {
        const Key& usage = DspUsage();
        return IFERROR(findOperationalModeMap(usage), "INVALID_STATE");
    }

    std::string_view computeDisplayConfigStr() const
    {
        const Key& mode = OperationalMode();
        return IFERROR(findDspConfigData(mode, "DISPLAY_STR"), "INVALID_STATE");
    }

    float computeOutputToggleRate() const
    {
        const Key& mode = OperationalMode();
        const std::string_view text = findDspConfigData(mode, "OUTPUT_TOGGLE");
        // Text that is no number throws, a missing row too: hosts must learn that their table has a hole.
        return IFERROR(zelm::number(text), 0.0f);
    }
};

#include "framework/ZelmModelBodies.inc"

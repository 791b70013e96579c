#include "dsp/ZelmOrvaneDspActivityModel.h"

#include "dsp/ZelmDspKey.h"
#include "framework/ZelmModelBlockImpl.h"

#include <string>

template class ZelmModelBlock<ZelmOrvaneDspActivityModel, ZelmOrvaneDspActivityParams, ZelmOrvaneDspActivityData>;

#define ZELM_MODEL ZelmOrvaneDspActivityModel
#define ZELM_CELL_ROWS "dsp/ZelmOrvaneDspActivityCells.def"
#include "framework/ZelmCellBodies.inc"

void ZelmOrvaneDspActivityModel::pullOutputs(Params& params, const Data& data) const
{
    viewDisplayConfigStr(params, data);
    calculateOutputToggleRate(params, data);
    viewOperationalMode(params, data);
    viewDspUsage(params, data);
}

std::string_view ZelmOrvaneDspActivityModel::viewDspUsage(Params& params, const Data& data) const
{
    return once(params[Params::DSP_USAGE], [&] {
        const std::string_view mode = viewDspMode(params, data);
        const std::string_view mult = viewMultUsed(params, data);
        const std::string_view cInput = viewCInputUsed(params, data);
        const std::string_view opmode = viewOpmodeUsage(params, data);
        const std::string_view preadd = viewPreaddUsed(params, data);
        const std::string_view b16 = viewFpb16Used(params, data);
        const std::string_view fpAdder = viewFpadderUsed(params, data);
        if (mode == "MACB_12X12_INT24" && mult == "YES" && cInput == "NO")
            return zelm::dspKey({mode, "_MULT_YES_CINPUT_NO"});
        if (mode == "MACB_18X18_INT24" && mult == "YES")
            return zelm::dspKey({mode, "_MULT_YES_", opmode});
        if (mode == "MACB_CPLX") // always multiplies, whatever MULT_USED says
            return zelm::dspKey({mode, "_MULT_YES_", opmode});
        if (mode == "MACB_FP32")
            return zelm::dspKey({mode, "_MULT_", mult, "_B16_", b16, "_ADDER_", fpAdder});
        if (mode == "MACB_INT8") // always multiplies, whatever MULT_USED says
            return zelm::dspKey({mode, "_MULT_YES_PREADD_", preadd, "_", opmode});
        return zelm::dspKey({mode, "_MULT_", mult, "_PREADD_", preadd, "_", opmode});
    });
}

std::string_view ZelmOrvaneDspActivityModel::viewOperationalMode(Params& params, const Data& data) const
{
    return once(params[Params::OPERATIONAL_MODE], [&] {
        const std::string_view usage = viewDspUsage(params, data);
        return ZelmHelperUtils::IFERROR(data.findOperationalModeMap(usage), "INVALID_STATE");
    });
}

std::string_view ZelmOrvaneDspActivityModel::viewDisplayConfigStr(Params& params, const Data& data) const
{
    return once(params[Params::DISPLAY_CONFIG_STR], [&] {
        const std::string_view mode = viewOperationalMode(params, data);
        return ZelmHelperUtils::IFERROR(data.findDspConfigData(mode, "DISPLAY_STR"), "INVALID_STATE");
    });
}

float ZelmOrvaneDspActivityModel::calculateOutputToggleRate(Params& params, const Data& data) const
{
    return once(params[Params::OUTPUT_TOGGLE_RATE], [&] {
        const std::string_view mode = viewOperationalMode(params, data);
        const std::string text(data.findDspConfigData(mode, "OUTPUT_TOGGLE"));
        // Text that is no number throws, a missing row too: hosts must learn that their table has a hole.
        return ZelmHelperUtils::IFERROR(std::stof(text), 0.0f);
    });
}

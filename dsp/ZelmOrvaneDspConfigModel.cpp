#include "dsp/ZelmOrvaneDspConfigModel.h"

#include "framework/ZelmModelBlockImpl.h"

template class ZelmModelBlock<ZelmOrvaneDspConfigModel, ZelmOrvaneDspConfigParams, ZelmOrvaneDspConfigData>;

#define ZELM_MODEL ZelmOrvaneDspConfigModel
#define ZELM_CELL_ROWS "dsp/ZelmOrvaneDspConfigCells.def"
#include "framework/ZelmCellBodies.inc"

void ZelmOrvaneDspConfigModel::pullOutputs(Params& params, const Data& data) const
{
    viewDspModeUsed(params, data);
}

std::string_view ZelmOrvaneDspConfigModel::viewDspModeUsed(Params& params, const Data& data) const
{
    return once(params[Params::DSP_MODE_USED], [&] { return viewDspMode(params, data); });
}

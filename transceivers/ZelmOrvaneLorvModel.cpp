#include "transceivers/ZelmOrvaneLorvModel.h"

#include "framework/ZelmModelBlockImpl.h"
#include "transceivers/ZelmLorvFormulas.h"

template class ZelmModelBlock<ZelmOrvaneLorvModel, ZelmOrvaneLorvParams, ZelmOrvaneLorvData>;

#define ZELM_MODEL ZelmOrvaneLorvModel
#define ZELM_CELL_ROWS "transceivers/ZelmOrvaneLorvCells.def"
#include "framework/ZelmCellBodies.inc"

#define ZELM_MODEL ZelmOrvaneLorvModel
#define ZELM_CELL_ROWS "transceivers/ZelmOrvaneLorvCells.def"
#include "transceivers/ZelmLorvBodies.inc"

int ZelmOrvaneLorvModel::calculateNumLorvquads(Params& params, const Data& data) const
{
    return once(params[Params::NUM_LORVQUADS], [&] {
        const float channels = static_cast<float>(getNumLorvquadChannels(params, data));
        return zelm::truncate(ZelmHelperUtils::ROUNDUP(channels * 0.25f, 0)); // four channels to a quad
    });
}

int ZelmOrvaneLorvModel::numChannels(Params& params, const Data& data) const
{
    return getNumLorvquadChannels(params, data);
}

float ZelmOrvaneLorvModel::commonShare(float share, Params& params, const Data& data) const
{
    return static_cast<float>(calculateNumLorvquads(params, data)) * share;
}

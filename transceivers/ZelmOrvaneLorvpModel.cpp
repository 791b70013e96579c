#include "transceivers/ZelmOrvaneLorvpModel.h"

#include "framework/ZelmModelBlockImpl.h"
#include "transceivers/ZelmLorvFormulas.h"

template class ZelmModelBlock<ZelmOrvaneLorvpModel, ZelmOrvaneLorvpParams, ZelmOrvaneLorvpData>;

#define ZELM_MODEL ZelmOrvaneLorvpModel
#define ZELM_CELL_ROWS "transceivers/ZelmOrvaneLorvpCells.def"
#include "framework/ZelmCellBodies.inc"

#define ZELM_MODEL ZelmOrvaneLorvpModel
#define ZELM_CELL_ROWS "transceivers/ZelmOrvaneLorvpCells.def"
#include "transceivers/ZelmLorvBodies.inc"

int ZelmOrvaneLorvpModel::calculateNumDual(Params& params, const Data& data) const
{
    return once(params[Params::NUM_DUAL], [&] { return zelm::channel::duals(getNumLorvpQuadChannels(params, data)); });
}

int ZelmOrvaneLorvpModel::calculateNumOctals(Params& params, const Data& data) const
{
    return once(params[Params::NUM_OCTALS],
                [&] { return zelm::channel::octals(getNumLorvpQuadChannels(params, data)); });
}

int ZelmOrvaneLorvpModel::calculateNumOfLcpllUsed(Params& params, const Data& data) const
{
    return once(params[Params::NUM_OF_LCPLL_USED], [&] {
        const int channels = getNumLorvpQuadChannels(params, data);
        const int sharing = getLcpllSharing(params, data);
        return zelm::channel::lcplls(channels, sharing);
    });
}

int ZelmOrvaneLorvpModel::numChannels(Params& params, const Data& data) const
{
    return getNumLorvpQuadChannels(params, data);
}

float ZelmOrvaneLorvpModel::commonShare(float share, Params&, const Data&) const
{
    return share; // no matter how many quads
}

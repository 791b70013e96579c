#include "transceivers/ZelmOrvaneLorvpModel.h"

#include "framework/ZelmModelBlockImpl.h"
#include "transceivers/ZelmLorvSheet.h"

#define ZELM_MODEL ZelmOrvaneLorvpModel
#define ZELM_CELL_ROWS "transceivers/ZelmOrvaneLorvpCells.def"
#define ZELM_TABLE_ROWS "transceivers/ZelmOrvaneLorvpTables.def"

struct ZelmOrvaneLorvpModel::Sheet : ZelmLorvSheet<ZelmOrvaneLorvpModel> {
#include "framework/ZelmAccessors.inc"

    int computeNumDual() const
    {
        return zelm::channel::duals(NumLorvpQuadChannels());
    }

    int computeNumOctals() const
    {
        return zelm::channel::octals(NumLorvpQuadChannels());
    }

    int computeNumOfLcpllUsed() const
    {
        const int channels = NumLorvpQuadChannels();
        const int sharing = LcpllSharing();
        return zelm::channel::lcplls(channels, sharing);
    }

    int numChannels() const
    {
        return NumLorvpQuadChannels();
    }

    static float commonShare(float share)
    {
        return share; // no matter how many quads
    }
};

#include "framework/ZelmModelBodies.inc"

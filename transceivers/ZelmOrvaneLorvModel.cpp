#include "transceivers/ZelmOrvaneLorvModel.h"

#include "framework/ZelmModelBlockImpl.h"
#include "transceivers/ZelmLorvSheet.h"

#define ZELM_MODEL ZelmOrvaneLorvModel
#define ZELM_CELL_ROWS "transceivers/ZelmOrvaneLorvCells.def"
#define ZELM_TABLE_ROWS "transceivers/ZelmOrvaneLorvTables.def"

struct ZelmOrvaneLorvModel::Sheet : ZelmLorvSheet<ZelmOrvaneLorvModel> {
#include "framework/ZelmAccessors.inc"

    int computeNumLorvquads() const
    {
        const float channels = static_cast<float>(NumLorvquadChannels());
        return zelm::truncate(ROUNDUP(channels * 0.25f, 0)); // four channels to a quad
    }

    int numChannels() const
    {
        return NumLorvquadChannels();
    }

    float commonShare(float share) const
    {
        return static_cast<float>(NumLorvquads()) * share;
    }
};

#include "framework/ZelmModelBodies.inc"

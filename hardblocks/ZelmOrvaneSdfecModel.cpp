#include "hardblocks/ZelmOrvaneSdfecModel.h"

#include "framework/ZelmModelBlockImpl.h"
#include "hardblocks/ZelmHardBlockSheet.h"

#define ZELM_MODEL ZelmOrvaneSdfecModel
#define ZELM_CELL_ROWS "hardblocks/ZelmOrvaneSdfecCells.def"
#define ZELM_TABLE_ROWS "hardblocks/ZelmOrvaneSdfecTables.def"

struct ZelmOrvaneSdfecModel::Sheet : ZelmKnownCurrentSheet<ZelmOrvaneSdfecModel> {
#include "framework/ZelmAccessors.inc"

    double computeCurrentFromSpec() const
    {
        const float current = findDynamicCurrents(Modes());
        return IFERROR(current, 0) / 0.78;
    }

    double computePower() const
    {
        const float current = CurrentFromSpec();
        const float datarate = Datarate();
        return powerOf(current) * datarate;
    }
};

#include "framework/ZelmModelBodies.inc"

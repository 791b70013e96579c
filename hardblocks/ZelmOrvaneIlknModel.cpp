#include "hardblocks/ZelmOrvaneIlknModel.h"

#include "framework/ZelmModelBlockImpl.h"
#include "hardblocks/ZelmHardBlockSheet.h"

#define ZELM_MODEL ZelmOrvaneIlknModel
#define ZELM_CELL_ROWS "hardblocks/ZelmOrvaneIlknCells.def"
#define ZELM_TABLE_ROWS "hardblocks/ZelmOrvaneIlknTables.def"

struct ZelmOrvaneIlknModel::Sheet : ZelmModeTableSheet<ZelmOrvaneIlknModel> {
#include "framework/ZelmAccessors.inc"

    int numUnits() const
    {
        return NumIlkn();
    }
};

#include "framework/ZelmModelBodies.inc"

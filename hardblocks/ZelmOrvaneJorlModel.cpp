#include "hardblocks/ZelmOrvaneJorlModel.h"

#include "framework/ZelmModelBlockImpl.h"
#include "hardblocks/ZelmHardBlockSheet.h"

#define ZELM_MODEL ZelmOrvaneJorlModel
#define ZELM_CELL_ROWS "hardblocks/ZelmOrvaneJorlCells.def"
#define ZELM_TABLE_ROWS "hardblocks/ZelmOrvaneJorlTables.def"

struct ZelmOrvaneJorlModel::Sheet : ZelmModeTableSheet<ZelmOrvaneJorlModel> {
#include "framework/ZelmAccessors.inc"

    int numUnits() const
    {
        return NumJorl();
    }
};

#include "framework/ZelmModelBodies.inc"

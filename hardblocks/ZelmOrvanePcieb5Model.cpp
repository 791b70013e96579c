#include "hardblocks/ZelmOrvanePcieb5Model.h"

#include "framework/ZelmModelBlockImpl.h"
#include "hardblocks/ZelmHardBlockSheet.h"

#define ZELM_MODEL ZelmOrvanePcieb5Model
#define ZELM_CELL_ROWS "hardblocks/ZelmOrvanePcieb5Cells.def"
#define ZELM_TABLE_ROWS "hardblocks/ZelmOrvanePcieb5Tables.def"

struct ZelmOrvanePcieb5Model::Sheet : ZelmPcieSheet<ZelmOrvanePcieb5Model> {
#include "framework/ZelmAccessors.inc"
};

#include "framework/ZelmModelBodies.inc"

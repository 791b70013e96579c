#include "hardblocks/ZelmOrvanePciebModel.h"

#include "framework/ZelmModelBlockImpl.h"
#include "hardblocks/ZelmHardBlockSheet.h"

#define ZELM_MODEL ZelmOrvanePciebModel
#define ZELM_CELL_ROWS "hardblocks/ZelmOrvanePciebCells.def"
#define ZELM_TABLE_ROWS "hardblocks/ZelmOrvanePciebTables.def"

struct ZelmOrvanePciebModel::Sheet : ZelmPcieSheet<ZelmOrvanePciebModel> {
#include "framework/ZelmAccessors.inc"
};

#include "framework/ZelmModelBodies.inc"

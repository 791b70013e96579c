#include "fabric/ZelmOrvaneCleLogicData.h"

#include "framework/ZelmDataBlockImpl.h"

template class ZelmDataBlock<ZelmOrvaneCleLogicData>;

#define ZELM_DATA ZelmOrvaneCleLogicData
#define ZELM_TABLE_ROWS "fabric/ZelmOrvaneCleLogicTables.def"
#include "framework/ZelmTableInfos.inc"

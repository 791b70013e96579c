#include "fabric/ZelmOrvaneCleClkData.h"

#include "framework/ZelmDataBlockImpl.h"

template class ZelmDataBlock<ZelmOrvaneCleClkData>;

#define ZELM_DATA ZelmOrvaneCleClkData
#define ZELM_TABLE_ROWS "fabric/ZelmOrvaneCleClkTables.def"
#include "framework/ZelmTableInfos.inc"

#include "clocking/ZelmOrvanePspllData.h"

#include "framework/ZelmDataBlockImpl.h"

template class ZelmDataBlock<ZelmOrvanePspllData>;

#define ZELM_DATA ZelmOrvanePspllData
#define ZELM_TABLE_ROWS "clocking/ZelmOrvanePspllTables.def"
#include "framework/ZelmTableInfos.inc"

#include "clocking/ZelmOrvaneDpllData.h"

#include "framework/ZelmDataBlockImpl.h"

template class ZelmDataBlock<ZelmOrvaneDpllData>;

#define ZELM_DATA ZelmOrvaneDpllData
#define ZELM_TABLE_ROWS "clocking/ZelmOrvaneDpllTables.def"
#include "framework/ZelmTableInfos.inc"

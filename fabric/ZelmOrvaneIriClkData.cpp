#include "fabric/ZelmOrvaneIriClkData.h"

#include "framework/ZelmDataBlockImpl.h"

template class ZelmDataBlock<ZelmOrvaneIriClkData>;

#define ZELM_DATA ZelmOrvaneIriClkData
#define ZELM_TABLE_ROWS "fabric/ZelmOrvaneIriClkTables.def"
#include "framework/ZelmTableInfos.inc"

#include "fabric/ZelmOrvaneClockData.h"

#include "framework/ZelmDataBlockImpl.h"

template class ZelmDataBlock<ZelmOrvaneClockData>;

#define ZELM_DATA ZelmOrvaneClockData
#define ZELM_TABLE_ROWS "fabric/ZelmOrvaneClockTables.def"
#include "framework/ZelmTableInfos.inc"

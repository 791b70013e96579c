#include "clocking/ZelmOrvaneRuskData.h"

#include "framework/ZelmDataBlockImpl.h"

template class ZelmDataBlock<ZelmOrvaneRuskData>;

#define ZELM_DATA ZelmOrvaneRuskData
#define ZELM_TABLE_ROWS "clocking/ZelmOrvaneRuskTables.def"
#include "framework/ZelmTableInfos.inc"

#include "network/ZelmOrvaneGorbData.h"

#include "framework/ZelmDataBlockImpl.h"

template class ZelmDataBlock<ZelmOrvaneGorbData>;

#define ZELM_DATA ZelmOrvaneGorbData
#define ZELM_TABLE_ROWS "network/ZelmOrvaneGorbTables.def"
#include "framework/ZelmTableInfos.inc"

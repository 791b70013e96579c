#include "memories/ZelmOrvaneBramData.h"

#include "framework/ZelmDataBlockImpl.h"

template class ZelmDataBlock<ZelmOrvaneBramData>;

#define ZELM_DATA ZelmOrvaneBramData
#define ZELM_TABLE_ROWS "memories/ZelmOrvaneBramTables.def"
#include "framework/ZelmTableInfos.inc"

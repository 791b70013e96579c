#include "memories/ZelmOrvanePlamData.h"

#include "framework/ZelmDataBlockImpl.h"

template class ZelmDataBlock<ZelmOrvanePlamData>;

#define ZELM_DATA ZelmOrvanePlamData
#define ZELM_TABLE_ROWS "memories/ZelmOrvanePlamTables.def"
#include "framework/ZelmTableInfos.inc"

#include "fabric/ZelmOrvaneIriImuxData.h"

#include "framework/ZelmDataBlockImpl.h"

template class ZelmDataBlock<ZelmOrvaneIriImuxData>;

#define ZELM_DATA ZelmOrvaneIriImuxData
#define ZELM_TABLE_ROWS "fabric/ZelmOrvaneIriImuxTables.def"
#include "framework/ZelmTableInfos.inc"

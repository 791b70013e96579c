#include "io/ZelmOrvaneNaltData.h"

#include "framework/ZelmDataBlockImpl.h"

template class ZelmDataBlock<ZelmOrvaneNaltData>;

#define ZELM_DATA ZelmOrvaneNaltData
#define ZELM_TABLE_ROWS "io/ZelmOrvaneNaltTables.def"
#include "framework/ZelmTableInfos.inc"

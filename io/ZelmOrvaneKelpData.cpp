#include "io/ZelmOrvaneKelpData.h"

#include "framework/ZelmDataBlockImpl.h"

template class ZelmDataBlock<ZelmOrvaneKelpData>;

#define ZELM_DATA ZelmOrvaneKelpData
#define ZELM_TABLE_ROWS "io/ZelmOrvaneKelpTables.def"
#include "framework/ZelmTableInfos.inc"

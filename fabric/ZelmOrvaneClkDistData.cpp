#include "fabric/ZelmOrvaneClkDistData.h"

#include "framework/ZelmDataBlockImpl.h"

template class ZelmDataBlock<ZelmOrvaneClkDistData>;

#define ZELM_DATA ZelmOrvaneClkDistData
#define ZELM_TABLE_ROWS "fabric/ZelmOrvaneClkDistTables.def"
#include "framework/ZelmTableInfos.inc"

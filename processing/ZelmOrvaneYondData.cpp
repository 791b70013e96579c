#include "processing/ZelmOrvaneYondData.h"

#include "framework/ZelmDataBlockImpl.h"

template class ZelmDataBlock<ZelmOrvaneYondData>;

#define ZELM_DATA ZelmOrvaneYondData
#define ZELM_TABLE_ROWS "processing/ZelmOrvaneYondTables.def"
#include "framework/ZelmTableInfos.inc"

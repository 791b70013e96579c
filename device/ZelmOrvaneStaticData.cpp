#include "device/ZelmOrvaneStaticData.h"

#include "framework/ZelmDataBlockImpl.h"

template class ZelmDataBlock<ZelmOrvaneStaticData>;

#define ZELM_DATA ZelmOrvaneStaticData
#define ZELM_TABLE_ROWS "device/ZelmOrvaneStaticTables.def"
#include "framework/ZelmTableInfos.inc"

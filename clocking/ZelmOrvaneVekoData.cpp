#include "clocking/ZelmOrvaneVekoData.h"

#include "framework/ZelmDataBlockImpl.h"

template class ZelmDataBlock<ZelmOrvaneVekoData>;

#define ZELM_DATA ZelmOrvaneVekoData
#define ZELM_TABLE_ROWS "clocking/ZelmOrvaneVekoTables.def"
#include "framework/ZelmTableInfos.inc"

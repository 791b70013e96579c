#include "network/ZelmOrvaneNocData.h"

#include "framework/ZelmDataBlockImpl.h"

template class ZelmDataBlock<ZelmOrvaneNocData>;

#define ZELM_DATA ZelmOrvaneNocData
#define ZELM_TABLE_ROWS "network/ZelmOrvaneNocTables.def"
#include "framework/ZelmTableInfos.inc"

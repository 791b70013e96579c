#include "hardblocks/ZelmOrvaneTuvoData.h"

#include "framework/ZelmDataBlockImpl.h"

template class ZelmDataBlock<ZelmOrvaneTuvoData>;

#define ZELM_DATA ZelmOrvaneTuvoData
#define ZELM_TABLE_ROWS "hardblocks/ZelmOrvaneTuvoTables.def"
#include "framework/ZelmTableInfos.inc"

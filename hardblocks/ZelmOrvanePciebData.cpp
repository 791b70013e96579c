#include "hardblocks/ZelmOrvanePciebData.h"

#include "framework/ZelmDataBlockImpl.h"

template class ZelmDataBlock<ZelmOrvanePciebData>;

#define ZELM_DATA ZelmOrvanePciebData
#define ZELM_TABLE_ROWS "hardblocks/ZelmOrvanePciebTables.def"
#include "framework/ZelmTableInfos.inc"

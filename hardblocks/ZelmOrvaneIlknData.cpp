#include "hardblocks/ZelmOrvaneIlknData.h"

#include "framework/ZelmDataBlockImpl.h"

template class ZelmDataBlock<ZelmOrvaneIlknData>;

#define ZELM_DATA ZelmOrvaneIlknData
#define ZELM_TABLE_ROWS "hardblocks/ZelmOrvaneIlknTables.def"
#include "framework/ZelmTableInfos.inc"

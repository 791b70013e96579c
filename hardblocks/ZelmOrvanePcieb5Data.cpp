#include "hardblocks/ZelmOrvanePcieb5Data.h"

#include "framework/ZelmDataBlockImpl.h"

template class ZelmDataBlock<ZelmOrvanePcieb5Data>;

#define ZELM_DATA ZelmOrvanePcieb5Data
#define ZELM_TABLE_ROWS "hardblocks/ZelmOrvanePcieb5Tables.def"
#include "framework/ZelmTableInfos.inc"

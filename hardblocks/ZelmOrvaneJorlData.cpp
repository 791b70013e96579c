#include "hardblocks/ZelmOrvaneJorlData.h"

#include "framework/ZelmDataBlockImpl.h"

template class ZelmDataBlock<ZelmOrvaneJorlData>;

#define ZELM_DATA ZelmOrvaneJorlData
#define ZELM_TABLE_ROWS "hardblocks/ZelmOrvaneJorlTables.def"
#include "framework/ZelmTableInfos.inc"

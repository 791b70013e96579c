#include "hardblocks/ZelmOrvaneHscData.h"

#include "framework/ZelmDataBlockImpl.h"

template class ZelmDataBlock<ZelmOrvaneHscData>;

#define ZELM_DATA ZelmOrvaneHscData
#define ZELM_TABLE_ROWS "hardblocks/ZelmOrvaneHscTables.def"
#include "framework/ZelmTableInfos.inc"

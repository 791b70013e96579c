#include "hardblocks/ZelmOrvaneNemtData.h"

#include "framework/ZelmDataBlockImpl.h"

template class ZelmDataBlock<ZelmOrvaneNemtData>;

#define ZELM_DATA ZelmOrvaneNemtData
#define ZELM_TABLE_ROWS "hardblocks/ZelmOrvaneNemtTables.def"
#include "framework/ZelmTableInfos.inc"

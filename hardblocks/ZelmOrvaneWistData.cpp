#include "hardblocks/ZelmOrvaneWistData.h"

#include "framework/ZelmDataBlockImpl.h"

template class ZelmDataBlock<ZelmOrvaneWistData>;

#define ZELM_DATA ZelmOrvaneWistData
#define ZELM_TABLE_ROWS "hardblocks/ZelmOrvaneWistTables.def"
#include "framework/ZelmTableInfos.inc"

#include "hardblocks/ZelmOrvaneSdfecData.h"

#include "framework/ZelmDataBlockImpl.h"

template class ZelmDataBlock<ZelmOrvaneSdfecData>;

#define ZELM_DATA ZelmOrvaneSdfecData
#define ZELM_TABLE_ROWS "hardblocks/ZelmOrvaneSdfecTables.def"
#include "framework/ZelmTableInfos.inc"

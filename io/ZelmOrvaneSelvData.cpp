#include "io/ZelmOrvaneSelvData.h"

#include "framework/ZelmDataBlockImpl.h"

template class ZelmDataBlock<ZelmOrvaneSelvData>;

#define ZELM_DATA ZelmOrvaneSelvData
#define ZELM_TABLE_ROWS "io/ZelmOrvaneSelvTables.def"
#include "framework/ZelmTableInfos.inc"

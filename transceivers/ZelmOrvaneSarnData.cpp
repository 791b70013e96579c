#include "transceivers/ZelmOrvaneSarnData.h"

#include "framework/ZelmDataBlockImpl.h"

template class ZelmDataBlock<ZelmOrvaneSarnData>;

#define ZELM_DATA ZelmOrvaneSarnData
#define ZELM_TABLE_ROWS "transceivers/ZelmOrvaneSarnTables.def"
#include "framework/ZelmTableInfos.inc"

#include "device/ZelmOrvaneSysmonData.h"

#include "framework/ZelmDataBlockImpl.h"

template class ZelmDataBlock<ZelmOrvaneSysmonData>;

#define ZELM_DATA ZelmOrvaneSysmonData
#define ZELM_TABLE_ROWS "device/ZelmOrvaneSysmonTables.def"
#include "framework/ZelmTableInfos.inc"

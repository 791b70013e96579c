#include "device/ZelmOrvanePartsData.h"

#include "framework/ZelmDataBlockImpl.h"

template class ZelmDataBlock<ZelmOrvanePartsData>;

#define ZELM_DATA ZelmOrvanePartsData
#define ZELM_TABLE_ROWS "device/ZelmOrvanePartsTables.def"
#include "framework/ZelmTableInfos.inc"

#include "network/ZelmOrvaneDdrmcData.h"

#include "framework/ZelmDataBlockImpl.h"

template class ZelmDataBlock<ZelmOrvaneDdrmcData>;

#define ZELM_DATA ZelmOrvaneDdrmcData
#define ZELM_TABLE_ROWS "network/ZelmOrvaneDdrmcTables.def"
#include "framework/ZelmTableInfos.inc"

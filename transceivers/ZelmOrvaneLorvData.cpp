#include "transceivers/ZelmOrvaneLorvData.h"

#include "framework/ZelmDataBlockImpl.h"

template class ZelmDataBlock<ZelmOrvaneLorvData>;

#define ZELM_DATA ZelmOrvaneLorvData
#define ZELM_TABLE_ROWS "transceivers/ZelmOrvaneLorvTables.def"
#include "framework/ZelmTableInfos.inc"

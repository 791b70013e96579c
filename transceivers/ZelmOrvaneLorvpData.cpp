#include "transceivers/ZelmOrvaneLorvpData.h"

#include "framework/ZelmDataBlockImpl.h"

template class ZelmDataBlock<ZelmOrvaneLorvpData>;

#define ZELM_DATA ZelmOrvaneLorvpData
#define ZELM_TABLE_ROWS "transceivers/ZelmOrvaneLorvpTables.def"
#include "framework/ZelmTableInfos.inc"

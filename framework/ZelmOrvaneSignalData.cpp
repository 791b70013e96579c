#include "framework/ZelmOrvaneSignalData.h"

#include "framework/ZelmDataBlockImpl.h"

template class ZelmDataBlock<ZelmOrvaneSignalData>;

#define ZELM_DATA ZelmOrvaneSignalData
#define ZELM_TABLE_ROWS "framework/ZelmOrvaneSignalTables.def"
#include "framework/ZelmTableInfos.inc"

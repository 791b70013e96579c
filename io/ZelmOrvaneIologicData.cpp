#include "io/ZelmOrvaneIologicData.h"

#include "framework/ZelmDataBlockImpl.h"

template class ZelmDataBlock<ZelmOrvaneIologicData>;

#define ZELM_DATA ZelmOrvaneIologicData
#define ZELM_TABLE_ROWS "io/ZelmOrvaneIologicTables.def"
#include "framework/ZelmTableInfos.inc"

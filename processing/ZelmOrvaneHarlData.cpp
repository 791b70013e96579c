#include "processing/ZelmOrvaneHarlData.h"

#include "framework/ZelmDataBlockImpl.h"

template class ZelmDataBlock<ZelmOrvaneHarlData>;

#define ZELM_DATA ZelmOrvaneHarlData
#define ZELM_TABLE_ROWS "processing/ZelmOrvaneHarlTables.def"
#include "framework/ZelmTableInfos.inc"

#include "hardblocks/ZelmOrvaneMulmData.h"

#include "framework/ZelmDataBlockImpl.h"

template class ZelmDataBlock<ZelmOrvaneMulmData>;

#define ZELM_DATA ZelmOrvaneMulmData
#define ZELM_TABLE_ROWS "hardblocks/ZelmOrvaneMulmTables.def"
#include "framework/ZelmTableInfos.inc"

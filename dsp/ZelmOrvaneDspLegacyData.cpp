#include "dsp/ZelmOrvaneDspLegacyData.h"

#include "framework/ZelmDataBlockImpl.h"

template class ZelmDataBlock<ZelmOrvaneDspLegacyData>;

#define ZELM_DATA ZelmOrvaneDspLegacyData
#define ZELM_TABLE_ROWS "dsp/ZelmOrvaneDspLegacyTables.def"
#include "framework/ZelmTableInfos.inc"

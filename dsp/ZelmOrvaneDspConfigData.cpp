#include "dsp/ZelmOrvaneDspConfigData.h"

#include "framework/ZelmDataBlockImpl.h"

template class ZelmDataBlock<ZelmOrvaneDspConfigData>;

#define ZELM_DATA ZelmOrvaneDspConfigData
#define ZELM_TABLE_ROWS "dsp/ZelmOrvaneDspConfigTables.def"
#include "framework/ZelmTableInfos.inc"

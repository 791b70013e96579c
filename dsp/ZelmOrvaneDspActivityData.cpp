#include "dsp/ZelmOrvaneDspActivityData.h"

#include "framework/ZelmDataBlockImpl.h"

template class ZelmDataBlock<ZelmOrvaneDspActivityData>;

#define ZELM_DATA ZelmOrvaneDspActivityData
#define ZELM_TABLE_ROWS "dsp/ZelmOrvaneDspActivityTables.def"
#include "framework/ZelmTableInfos.inc"

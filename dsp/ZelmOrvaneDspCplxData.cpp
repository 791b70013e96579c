#include "dsp/ZelmOrvaneDspCplxData.h"

#include "framework/ZelmDataBlockImpl.h"

template class ZelmDataBlock<ZelmOrvaneDspCplxData>;

#define ZELM_DATA ZelmOrvaneDspCplxData
#define ZELM_TABLE_ROWS "dsp/ZelmOrvaneDspCplxTables.def"
#include "framework/ZelmTableInfos.inc"

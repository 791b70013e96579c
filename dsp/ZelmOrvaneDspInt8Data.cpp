#include "dsp/ZelmOrvaneDspInt8Data.h"

#include "framework/ZelmDataBlockImpl.h"

template class ZelmDataBlock<ZelmOrvaneDspInt8Data>;

#define ZELM_DATA ZelmOrvaneDspInt8Data
#define ZELM_TABLE_ROWS "dsp/ZelmOrvaneDspInt8Tables.def"
#include "framework/ZelmTableInfos.inc"

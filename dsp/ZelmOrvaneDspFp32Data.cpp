#include "dsp/ZelmOrvaneDspFp32Data.h"

#include "framework/ZelmDataBlockImpl.h"

template class ZelmDataBlock<ZelmOrvaneDspFp32Data>;

#define ZELM_DATA ZelmOrvaneDspFp32Data
#define ZELM_TABLE_ROWS "dsp/ZelmOrvaneDspFp32Tables.def"
#include "framework/ZelmTableInfos.inc"

#include "dsp/ZelmOrvaneDspInt24Data.h"

#include "framework/ZelmDataBlockImpl.h"

template class ZelmDataBlock<ZelmOrvaneDspInt24Data>;

#define ZELM_DATA ZelmOrvaneDspInt24Data
#define ZELM_TABLE_ROWS "dsp/ZelmOrvaneDspInt24Tables.def"
#include "framework/ZelmTableInfos.inc"

#include "hardblocks/ZelmOrvaneWist5Data.h"

#include "framework/ZelmDataBlockImpl.h"

template class ZelmDataBlock<ZelmOrvaneWist5Data>;

#define ZELM_DATA ZelmOrvaneWist5Data
#define ZELM_TABLE_ROWS "hardblocks/ZelmOrvaneWist5Tables.def"
#include "framework/ZelmTableInfos.inc"

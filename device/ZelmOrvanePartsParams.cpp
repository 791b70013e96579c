#include "device/ZelmOrvanePartsParams.h"

#include "framework/ZelmParamBlockImpl.h"

template class ZelmParamBlock<ZelmOrvanePartsCells>;

#define ZELM_CELLS ZelmOrvanePartsCells
#define ZELM_CELL_ROWS "device/ZelmOrvanePartsCells.def"
#include "framework/ZelmCellInfos.inc"

#include "device/ZelmOrvaneStaticParams.h"

#include "framework/ZelmParamBlockImpl.h"

template class ZelmParamBlock<ZelmOrvaneStaticCells>;

#define ZELM_CELLS ZelmOrvaneStaticCells
#define ZELM_CELL_ROWS "device/ZelmOrvaneStaticCells.def"
#include "framework/ZelmCellInfos.inc"

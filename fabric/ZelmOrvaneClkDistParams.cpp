#include "fabric/ZelmOrvaneClkDistParams.h"

#include "framework/ZelmParamBlockImpl.h"

template class ZelmParamBlock<ZelmOrvaneClkDistCells>;

#define ZELM_CELLS ZelmOrvaneClkDistCells
#define ZELM_CELL_ROWS "fabric/ZelmOrvaneClkDistCells.def"
#include "framework/ZelmCellInfos.inc"

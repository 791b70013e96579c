#include "fabric/ZelmOrvaneClockParams.h"

#include "framework/ZelmParamBlockImpl.h"

template class ZelmParamBlock<ZelmOrvaneClockCells>;

#define ZELM_CELLS ZelmOrvaneClockCells
#define ZELM_CELL_ROWS "fabric/ZelmOrvaneClockCells.def"
#include "framework/ZelmCellInfos.inc"

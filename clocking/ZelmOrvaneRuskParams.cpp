#include "clocking/ZelmOrvaneRuskParams.h"

#include "framework/ZelmParamBlockImpl.h"

template class ZelmParamBlock<ZelmOrvaneRuskCells>;

#define ZELM_CELLS ZelmOrvaneRuskCells
#define ZELM_CELL_ROWS "clocking/ZelmOrvaneRuskCells.def"
#include "framework/ZelmCellInfos.inc"

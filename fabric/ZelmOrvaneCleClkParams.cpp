#include "fabric/ZelmOrvaneCleClkParams.h"

#include "framework/ZelmParamBlockImpl.h"

template class ZelmParamBlock<ZelmOrvaneCleClkCells>;

#define ZELM_CELLS ZelmOrvaneCleClkCells
#define ZELM_CELL_ROWS "fabric/ZelmOrvaneCleClkCells.def"
#include "framework/ZelmCellInfos.inc"

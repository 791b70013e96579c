#include "fabric/ZelmOrvaneCleLogicParams.h"

#include "framework/ZelmParamBlockImpl.h"

template class ZelmParamBlock<ZelmOrvaneCleLogicCells>;

#define ZELM_CELLS ZelmOrvaneCleLogicCells
#define ZELM_CELL_ROWS "fabric/ZelmOrvaneCleLogicCells.def"
#include "framework/ZelmCellInfos.inc"

#include "memories/ZelmOrvaneBramParams.h"

#include "framework/ZelmParamBlockImpl.h"

template class ZelmParamBlock<ZelmOrvaneBramCells>;

#define ZELM_CELLS ZelmOrvaneBramCells
#define ZELM_CELL_ROWS "memories/ZelmOrvaneBramCells.def"
#include "framework/ZelmCellInfos.inc"

#include "transceivers/ZelmOrvaneSarnParams.h"

#include "framework/ZelmParamBlockImpl.h"

template class ZelmParamBlock<ZelmOrvaneSarnCells>;

#define ZELM_CELLS ZelmOrvaneSarnCells
#define ZELM_CELL_ROWS "transceivers/ZelmOrvaneSarnCells.def"
#include "framework/ZelmCellInfos.inc"

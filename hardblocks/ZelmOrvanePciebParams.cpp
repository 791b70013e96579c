#include "hardblocks/ZelmOrvanePciebParams.h"

#include "framework/ZelmParamBlockImpl.h"

template class ZelmParamBlock<ZelmOrvanePciebCells>;

#define ZELM_CELLS ZelmOrvanePciebCells
#define ZELM_CELL_ROWS "hardblocks/ZelmOrvanePciebCells.def"
#include "framework/ZelmCellInfos.inc"

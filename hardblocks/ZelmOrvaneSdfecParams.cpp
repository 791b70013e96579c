#include "hardblocks/ZelmOrvaneSdfecParams.h"

#include "framework/ZelmParamBlockImpl.h"

template class ZelmParamBlock<ZelmOrvaneSdfecCells>;

#define ZELM_CELLS ZelmOrvaneSdfecCells
#define ZELM_CELL_ROWS "hardblocks/ZelmOrvaneSdfecCells.def"
#include "framework/ZelmCellInfos.inc"

#include "hardblocks/ZelmOrvaneHscParams.h"

#include "framework/ZelmParamBlockImpl.h"

template class ZelmParamBlock<ZelmOrvaneHscCells>;

#define ZELM_CELLS ZelmOrvaneHscCells
#define ZELM_CELL_ROWS "hardblocks/ZelmOrvaneHscCells.def"
#include "framework/ZelmCellInfos.inc"

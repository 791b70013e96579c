#include "hardblocks/ZelmOrvaneNemtParams.h"

#include "framework/ZelmParamBlockImpl.h"

template class ZelmParamBlock<ZelmOrvaneNemtCells>;

#define ZELM_CELLS ZelmOrvaneNemtCells
#define ZELM_CELL_ROWS "hardblocks/ZelmOrvaneNemtCells.def"
#include "framework/ZelmCellInfos.inc"

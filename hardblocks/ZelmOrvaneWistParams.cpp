#include "hardblocks/ZelmOrvaneWistParams.h"

#include "framework/ZelmParamBlockImpl.h"

template class ZelmParamBlock<ZelmOrvaneWistCells>;

#define ZELM_CELLS ZelmOrvaneWistCells
#define ZELM_CELL_ROWS "hardblocks/ZelmOrvaneWistCells.def"
#include "framework/ZelmCellInfos.inc"

#include "hardblocks/ZelmOrvaneIlknParams.h"

#include "framework/ZelmParamBlockImpl.h"

template class ZelmParamBlock<ZelmOrvaneIlknCells>;

#define ZELM_CELLS ZelmOrvaneIlknCells
#define ZELM_CELL_ROWS "hardblocks/ZelmOrvaneIlknCells.def"
#include "framework/ZelmCellInfos.inc"

#include "hardblocks/ZelmOrvaneJorlParams.h"

#include "framework/ZelmParamBlockImpl.h"

template class ZelmParamBlock<ZelmOrvaneJorlCells>;

#define ZELM_CELLS ZelmOrvaneJorlCells
#define ZELM_CELL_ROWS "hardblocks/ZelmOrvaneJorlCells.def"
#include "framework/ZelmCellInfos.inc"

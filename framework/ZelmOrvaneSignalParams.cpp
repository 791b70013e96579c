#include "framework/ZelmOrvaneSignalParams.h"

#include "framework/ZelmParamBlockImpl.h"

template class ZelmParamBlock<ZelmOrvaneSignalCells>;

#define ZELM_CELLS ZelmOrvaneSignalCells
#define ZELM_CELL_ROWS "framework/ZelmOrvaneSignalCells.def"
#include "framework/ZelmCellInfos.inc"

#include "network/ZelmOrvaneGorbParams.h"

#include "framework/ZelmParamBlockImpl.h"

template class ZelmParamBlock<ZelmOrvaneGorbCells>;

#define ZELM_CELLS ZelmOrvaneGorbCells
#define ZELM_CELL_ROWS "network/ZelmOrvaneGorbCells.def"
#include "framework/ZelmCellInfos.inc"

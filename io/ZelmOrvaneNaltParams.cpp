#include "io/ZelmOrvaneNaltParams.h"

#include "framework/ZelmParamBlockImpl.h"

template class ZelmParamBlock<ZelmOrvaneNaltCells>;

#define ZELM_CELLS ZelmOrvaneNaltCells
#define ZELM_CELL_ROWS "io/ZelmOrvaneNaltCells.def"
#include "framework/ZelmCellInfos.inc"

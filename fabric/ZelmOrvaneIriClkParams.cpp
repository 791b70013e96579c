#include "fabric/ZelmOrvaneIriClkParams.h"

#include "framework/ZelmParamBlockImpl.h"

template class ZelmParamBlock<ZelmOrvaneIriClkCells>;

#define ZELM_CELLS ZelmOrvaneIriClkCells
#define ZELM_CELL_ROWS "fabric/ZelmOrvaneIriClkCells.def"
#include "framework/ZelmCellInfos.inc"

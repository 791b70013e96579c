#include "fabric/ZelmOrvaneIriImuxParams.h"

#include "framework/ZelmParamBlockImpl.h"

template class ZelmParamBlock<ZelmOrvaneIriImuxCells>;

#define ZELM_CELLS ZelmOrvaneIriImuxCells
#define ZELM_CELL_ROWS "fabric/ZelmOrvaneIriImuxCells.def"
#include "framework/ZelmCellInfos.inc"

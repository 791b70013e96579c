#include "io/ZelmOrvaneKelpParams.h"

#include "framework/ZelmParamBlockImpl.h"

template class ZelmParamBlock<ZelmOrvaneKelpCells>;

#define ZELM_CELLS ZelmOrvaneKelpCells
#define ZELM_CELL_ROWS "io/ZelmOrvaneKelpCells.def"
#include "framework/ZelmCellInfos.inc"

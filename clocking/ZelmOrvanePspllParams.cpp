#include "clocking/ZelmOrvanePspllParams.h"

#include "framework/ZelmParamBlockImpl.h"

template class ZelmParamBlock<ZelmOrvanePspllCells>;

#define ZELM_CELLS ZelmOrvanePspllCells
#define ZELM_CELL_ROWS "clocking/ZelmOrvanePspllCells.def"
#include "framework/ZelmCellInfos.inc"

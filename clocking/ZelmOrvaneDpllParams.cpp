#include "clocking/ZelmOrvaneDpllParams.h"

#include "framework/ZelmParamBlockImpl.h"

template class ZelmParamBlock<ZelmOrvaneDpllCells>;

#define ZELM_CELLS ZelmOrvaneDpllCells
#define ZELM_CELL_ROWS "clocking/ZelmOrvaneDpllCells.def"
#include "framework/ZelmCellInfos.inc"

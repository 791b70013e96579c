#include "io/ZelmOrvaneSelvParams.h"

#include "framework/ZelmParamBlockImpl.h"

template class ZelmParamBlock<ZelmOrvaneSelvCells>;

#define ZELM_CELLS ZelmOrvaneSelvCells
#define ZELM_CELL_ROWS "io/ZelmOrvaneSelvCells.def"
#include "framework/ZelmCellInfos.inc"

#include "processing/ZelmOrvaneHarlParams.h"

#include "framework/ZelmParamBlockImpl.h"

template class ZelmParamBlock<ZelmOrvaneHarlCells>;

#define ZELM_CELLS ZelmOrvaneHarlCells
#define ZELM_CELL_ROWS "processing/ZelmOrvaneHarlCells.def"
#include "framework/ZelmCellInfos.inc"

#include "network/ZelmOrvaneNocParams.h"

#include "framework/ZelmParamBlockImpl.h"

template class ZelmParamBlock<ZelmOrvaneNocCells>;

#define ZELM_CELLS ZelmOrvaneNocCells
#define ZELM_CELL_ROWS "network/ZelmOrvaneNocCells.def"
#include "framework/ZelmCellInfos.inc"

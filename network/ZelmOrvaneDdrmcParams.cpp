#include "network/ZelmOrvaneDdrmcParams.h"

#include "framework/ZelmParamBlockImpl.h"

template class ZelmParamBlock<ZelmOrvaneDdrmcCells>;

#define ZELM_CELLS ZelmOrvaneDdrmcCells
#define ZELM_CELL_ROWS "network/ZelmOrvaneDdrmcCells.def"
#include "framework/ZelmCellInfos.inc"

#include "transceivers/ZelmOrvaneLorvParams.h"

#include "framework/ZelmParamBlockImpl.h"

template class ZelmParamBlock<ZelmOrvaneLorvCells>;

#define ZELM_CELLS ZelmOrvaneLorvCells
#define ZELM_CELL_ROWS "transceivers/ZelmOrvaneLorvCells.def"
#include "framework/ZelmCellInfos.inc"

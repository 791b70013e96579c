#include "transceivers/ZelmOrvaneLorvpParams.h"

#include "framework/ZelmParamBlockImpl.h"

template class ZelmParamBlock<ZelmOrvaneLorvpCells>;

#define ZELM_CELLS ZelmOrvaneLorvpCells
#define ZELM_CELL_ROWS "transceivers/ZelmOrvaneLorvpCells.def"
#include "framework/ZelmCellInfos.inc"

#include "processing/ZelmOrvaneYondParams.h"

#include "framework/ZelmParamBlockImpl.h"

template class ZelmParamBlock<ZelmOrvaneYondCells>;

#define ZELM_CELLS ZelmOrvaneYondCells
#define ZELM_CELL_ROWS "processing/ZelmOrvaneYondCells.def"
#include "framework/ZelmCellInfos.inc"

#include "io/ZelmOrvaneIologicParams.h"

#include "framework/ZelmParamBlockImpl.h"

template class ZelmParamBlock<ZelmOrvaneIologicCells>;

#define ZELM_CELLS ZelmOrvaneIologicCells
#define ZELM_CELL_ROWS "io/ZelmOrvaneIologicCells.def"
#include "framework/ZelmCellInfos.inc"

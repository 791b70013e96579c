#include "memories/ZelmOrvanePlamParams.h"

#include "framework/ZelmParamBlockImpl.h"

template class ZelmParamBlock<ZelmOrvanePlamCells>;

#define ZELM_CELLS ZelmOrvanePlamCells
#define ZELM_CELL_ROWS "memories/ZelmOrvanePlamCells.def"
#include "framework/ZelmCellInfos.inc"

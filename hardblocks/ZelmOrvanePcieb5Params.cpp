#include "hardblocks/ZelmOrvanePcieb5Params.h"

#include "framework/ZelmParamBlockImpl.h"

template class ZelmParamBlock<ZelmOrvanePcieb5Cells>;

#define ZELM_CELLS ZelmOrvanePcieb5Cells
#define ZELM_CELL_ROWS "hardblocks/ZelmOrvanePcieb5Cells.def"
#include "framework/ZelmCellInfos.inc"

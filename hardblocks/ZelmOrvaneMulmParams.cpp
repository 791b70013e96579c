#include "hardblocks/ZelmOrvaneMulmParams.h"

#include "framework/ZelmParamBlockImpl.h"

template class ZelmParamBlock<ZelmOrvaneMulmCells>;

#define ZELM_CELLS ZelmOrvaneMulmCells
#define ZELM_CELL_ROWS "hardblocks/ZelmOrvaneMulmCells.def"
#include "framework/ZelmCellInfos.inc"
